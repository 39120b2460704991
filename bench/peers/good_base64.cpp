#include "bench/peers/good_base64.h"

#include <array>
#include <cstdint>

#include "bench/peers/plain_codecs.h"

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint32_t foreign = 0x80000000;

struct tables {
  std::array<std::array<char, 2>, 4096> pairs{};
  // The bits of a character for each position in a group.
  std::array<std::array<std::uint32_t, 256>, 4> places{};

  tables() {
    for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = {alphabet[i >> 6], alphabet[i & 63]};
    for (auto& place : places) place.fill(foreign);
    for (std::uint32_t value = 0; value < 64; ++value) {
      for (std::size_t place = 0; place < 4; ++place) {
        places[place][static_cast<unsigned char>(alphabet[value])] = value << (18 - 6 * place);
      }
    }
  }
};

const tables table;

}  // namespace

void table_base64_encode(const char* text, std::size_t size, std::string& out) {
  const auto* in = reinterpret_cast<const unsigned char*>(text);
  const std::size_t before = out.size();
  out.resize(before + (size + 2) / 3 * 4);
  char* at = out.data() + before;
  for (; size >= 3; size -= 3, in += 3) {
    const auto group = static_cast<std::uint32_t>(in[0] << 16 | in[1] << 8 | in[2]);
    for (const auto& pair : {table.pairs[group >> 12], table.pairs[group & 4095]}) {
      *at++ = pair[0];
      *at++ = pair[1];
    }
  }
  plain_base64_encode(in, size, at);
}

std::size_t table_base64_decode(char* text, std::size_t size) {
  char* out = text;
  const char* in = text;
  const char* const end = text + size;
  for (; end - in >= 4; in += 4, out += 3) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      group |= table.places[i][static_cast<unsigned char>(in[i])];
    }
    if ((group & foreign) != 0) break;
    out[0] = static_cast<char>(group >> 16);
    out[1] = static_cast<char>(group >> 8);
    out[2] = static_cast<char>(group);
  }
  const std::size_t rest = plain_base64_decode(in, static_cast<std::size_t>(end - in), out);
  return static_cast<std::size_t>(out - text) + rest;
}
