// What several unit tests need: bytes, streams and readable results.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "messages/website.h"
#include "tests/support/fake_platform.h"
#include "tests/support/payload.h"
#include "tests/unit/table.h"
#include "transport/reassembly.h"

// Tests that start with a new fake system, its diagnostics off or on.
struct quiet_test : testing::Test {
  quiet_test() { fake::reset(false); }
};
struct logged_test : testing::Test {
  logged_test() { fake::reset(true); }
};

std::string form_of(iCfMsg& message);

// A null pointer as the runtime shows it.
std::string null_address();

using file_pointer = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
file_pointer file_with(std::string_view bytes);

// The message that an envelope completes, or nothing, and the integer result, as in "text|0".
std::string reassemble_in(fragment_store& store, std::string envelope);
std::string reassemble(const std::string& envelope);

// The replies in the frames; checks that all are whole and in order.
struct received_reply {
  const std::string& text() const { return joined; }
  std::string joined;
  std::vector<std::size_t> sizes;  // of the envelopes since the previous reply
};
std::vector<received_reply> replies_in(std::string_view frames);
