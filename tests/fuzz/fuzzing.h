// What several fuzz targets need.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// libFuzzer calls this with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the process, which makes libFuzzer report the input, unless the promise was kept.
void require(bool kept, const char* promise);

// Takes the first byte of an input, which chooses what the rest is for; 0 if there is none.
std::uint8_t take_byte(std::string_view& input);

// Takes the next of an input's texts, which are separated by empty lines.
std::string_view take_text(std::string_view& input);

// Decodes base64 one character at a time.
std::string plainly_decoded(std::string_view text);

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}
