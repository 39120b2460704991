// Collects the bytes of a form, on the library's side of `write`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "messages/message.h"

using byte_list = std::vector<unsigned char>;

// The length of a payload travels in 31 bits.
constexpr std::size_t largest_payload = INT32_MAX;

class byte_sink final : public implements<byte_sink, cfSink> {
 public:
  // Starts with `room` zero bytes before the form, which don't count towards the payload.
  explicit byte_sink(std::size_t room = 0) : room_(room), bytes_(room) {}

  // False if the payload would become too long.
  bool write_bytes(const void* bytes, std::uint64_t size) override {
    if (size > largest_payload - (bytes_.size() - room_)) return false;
    const auto* const first = static_cast<const unsigned char*>(bytes);
    bytes_.insert(bytes_.end(), first, first + size);
    return true;
  }

  // A stream for one form that writes to this sink.
  cfOStream stream() { return {0, this, 0, 1}; }

  const byte_list& bytes() const { return bytes_; }
  byte_list take() { return std::move(bytes_); }

 private:
  std::size_t room_;
  byte_list bytes_;
};
