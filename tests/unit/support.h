// What several unit tests need: bytes, streams and readable pictures.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "messages/website.h"
#include "tests/support/fake_platform.h"
#include "tests/unit/table.h"

// Tests that start with a new fake system, its diagnostics off or on.
struct quiet_test : testing::Test {
  quiet_test() { fake::reset(false); }
};
struct logged_test : testing::Test {
  logged_test() { fake::reset(true); }
};

std::string wide_bytes(wide_view text);  // as in a payload, with its terminator
std::string word(std::uint32_t value);
std::string frame(std::string_view payload);

// Collects what a message writes; from the call with the number `refused` on it refuses.
struct memory_sink : cfSink {
  bool write_bytes(const void* data, std::uint64_t size) override;
  std::string bytes;
  int calls = 0, refused = 1000;
  cfOStream stream{0, this, 0, 1};
};
std::string form_of(iCfMsg& message);

// A stream over a copy that starts at an odd address and ends where its memory ends.
struct odd_payload {
  explicit odd_payload(std::string_view text) : memory(new unsigned char[text.size() + 1]) {
    std::memcpy(memory.get() + 1, text.data(), text.size());
  }
  std::unique_ptr<unsigned char[]> memory;
};
struct odd_stream : odd_payload, cfIStream {
  explicit odd_stream(std::string_view text)
      : odd_payload(text), cfIStream(memory.get() + 1, std::ssize(text)) {}
};

// A null pointer as the runtime shows it.
std::string null_address();

// "sender|size key=value ...|size key=value ...|flags,x,y": the page's bag, then each input's;
// pairs with an empty value show in the size alone.
std::string picture(const CfMsgWebsite& message);

using file_pointer = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
file_pointer file_with(std::string_view bytes);

// The message that an envelope completes, or nothing, and the integer result, as in "text|0".
std::string reassemble(std::string envelope);

// The frames of one reply, each checked to be exactly as laid down.
struct received_reply {
  std::string id, encoded;
  std::vector<std::size_t> sizes;  // of the envelopes
  bool complete = false;
  std::string text() const;
};
std::vector<received_reply> replies_in(std::string_view stream);
