// Bytes of payloads and frames, and streams for writing and reading messages.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "messages/message.h"

std::string wide_bytes(wide_view text);  // as in a payload, with its terminator
std::string word(std::uint32_t value);
std::string frame(std::string_view payload);

// Collects what a message writes; refuses from the call with the number `refused` on.
struct memory_sink final : implements<memory_sink, cfSink> {
  bool write_bytes(const void* data, std::uint64_t size) override;
  std::string bytes;
  int calls = 0, refused = 1'000'000;
  cfOStream stream{0, this, 0, 1};
};

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
