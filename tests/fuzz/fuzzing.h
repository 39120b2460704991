// What several fuzz targets need.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// libFuzzer calls this with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the process, and so has the input reported, unless the promise was kept.
void require(bool kept, const char* promise);

// The first byte of an input, which chooses what the rest is for; 0 where there is none.
std::uint8_t take_byte(std::string_view& input);

// The next of the texts of an input, which stand with an empty line between them.
std::string_view take_text(std::string_view& input);

// What base64 stands for, decoded one character after the other.
std::string plainly_decoded(std::string_view text);

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}
