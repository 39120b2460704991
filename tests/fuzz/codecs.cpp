// Compares the codecs with plain ones, and each fast path with the slow one.

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "json/string_marks.h"
#include "platform/portable/ascii_runs.h"
#include "tests/fuzz/fuzzing.h"
#include "transport/codecs/base64.h"
#include "transport/codecs/text.h"

namespace {

void check_decoder(const std::vector<char>& text, std::size_t room, int width) {
  const std::string expected = plainly_decoded({text.data(), text.size()});
  const std::unique_ptr<char[]> out(new char[room]);
  auto length = static_cast<std::int32_t>(room);
  const int result =
      base64_decode(text.data(), out.get(), &length, text.data() + text.size(), width);
  require(length == std::ssize(expected), "the decoder tells the full length");
  require((result == 0) == (expected.size() <= room), "only lack of room fails");
  const std::size_t whole = result == 0 ? expected.size() : room / 3 * 3;
  require(expected.compare(0, whole, out.get(), whole) == 0, "all that fits is decoded");
}

void check_decoding_in_place(std::vector<char> text, int width) {
  const std::string expected = plainly_decoded({text.data(), text.size()});
  auto length = static_cast<std::int32_t>(text.size());
  const int result =
      base64_decode(text.data(), text.data(), &length, text.data() + text.size(), width);
  require(result == 0 && length == std::ssize(expected) &&
              std::equal(expected.begin(), expected.end(), text.begin()),
          "a text is decoded where it lies");
}

void check_encoder(const std::vector<char>& bytes, int width) {
  const auto size = static_cast<std::int32_t>(bytes.size());
  std::int32_t length = base64_encoded_length(size);
  const auto room = static_cast<std::size_t>(length);
  const std::unique_ptr<char[]> out(new char[room]);
  require(base64_encode(bytes.data(), size, out.get(), &length, width) == 0, "anything is encoded");
  const std::string text(out.get(), room);
  require(length == std::ssize(text) &&
              plainly_decoded(text) == std::string_view(bytes.data(), bytes.size()),
          "what is encoded is decoded");
}

// Byte by byte, with what the parser relies on alone.
void check_string_marks(std::vector<char> text, int width) {
  text.push_back('\0');
  char* const end = text.data() + text.size() - 1;
  string_marks marks(text.data(), end, width);
  bool inside = false, escaped = false;
  for (char* at = text.data(); at <= end; ++at) {
    const bool starts = *at == '\\' && !escaped, is_quote = *at == '"' && !escaped;
    if (is_quote) inside = !inside;
    const bool is_mark = is_quote ? !inside : inside && *at != '"' && interrupts_text(*at);
    if (at == end || (is_mark && (*at != '\\' || starts))) {
      require(marks.take() == at, "a string ends here, or needs a closer look");
    }
    escaped = starts;
  }
}

// For both runs of ASCII: checks what they have converted, and that they converted nothing else.
template <class From, class To>
void check_run(void (*run)(const From*&, const From*, To*&), const From* start, std::size_t size) {
  const std::unique_ptr<To[]> out(new To[size]);
  const From* in = start;
  To* at = out.get();
  run(in, start + size, at);
  require(in - start == at - out.get() && std::equal(start, in, out.get()) &&
              std::all_of(start, in, [](From c) { return c < 128; }),
          "a run of ASCII is converted");
}

// Decodes a sequence of `size` bytes by its marks alone, which may give a surrogate. False unless
// this is the only way to write that code point.
bool is_sequence(const unsigned char* in, std::size_t size, std::uint32_t& point) {
  constexpr std::uint32_t marks[] = {0, 0x00, 0xC0, 0xE0, 0xF0},
                          least[] = {0, 0, 0x80, 0x800, 0x10000};
  constexpr std::uint32_t mask[] = {0, 0x80, 0xE0, 0xF0, 0xF8};
  if ((in[0] & mask[size]) != marks[size]) return false;
  point = in[0] & ~mask[size] & 0xFF;
  for (std::size_t i = 1; i < size; ++i) {
    if (in[i] / 64 != 2) return false;
    point = point * 64 + in[i] % 64;
  }
  return point >= least[size] && point <= 0x10FFFF;
}

// Converts by the book, except that each ill-formed byte becomes U+FFFD.
wide_string plainly_widened(std::string_view text) {
  wide_string out;
  const auto* in = reinterpret_cast<const unsigned char*>(text.data());
  for (std::size_t at = 0, size = 1; at < text.size(); at += size) {
    std::uint32_t point = 0xFFFD;
    for (size = 4; size > 0; --size) {
      if (size <= text.size() - at && is_sequence(in + at, size, point)) break;
    }
    if (size == 0) point = 0xFFFD, size = 1;
    if (point >= 0x10000) out += static_cast<wide_char>(0xD7C0 + point / 0x400);
    out += static_cast<wide_char>(point < 0x10000 ? point : 0xDC00 + point % 0x400);
  }
  return out;
}

// Unit tests cover how many U+FFFD stand for an ill-formed sequence.
wide_string without_repetition(wide_string text) {
  const auto both_replaced = [](wide_char a, wide_char b) { return a == 0xFFFD && b == 0xFFFD; };
  text.erase(std::unique(text.begin(), text.end(), both_replaced), text.end());
  return text;
}

void check_widening(const std::vector<char>& text) {
  wide_string wide;
  require(utf8_to_wide(wide, text.data(), static_cast<std::uint32_t>(text.size())),
          "anything is widened");
  const std::string to_nul = std::string(text.data(), text.size()).c_str();
  require(without_repetition(wide) == without_repetition(plainly_widened(to_nul)),
          "text is widened");
  const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
  check_run(ascii_runs::widen, bytes, text.size());
  check_run(ascii_runs::widen_wordwise, bytes, text.size());
}

void check_narrowing(const std::vector<wide_char>& units) {
  const auto size = static_cast<std::uint32_t>(units.size());
  std::string narrow;
  require(wide_to_utf8(narrow, units.data(), size), "anything is narrowed");
  const wide_string back = plainly_widened(narrow);
  for (std::size_t i = 0; i < size && units[i] != 0; ++i) {
    const auto half = [&](std::size_t at) { return at < size ? units[at] / 0x400 : 0; };
    const bool lone =
        (half(i) == 0x36 && half(i + 1) != 0x37) || (half(i) == 0x37 && half(i - 1) != 0x36);
    require(back.at(i) == (lone ? 0xFFFD : units[i]), "lone surrogates alone are replaced");
  }
  check_run(ascii_runs::narrow, units.data(), units.size());
  check_run(ascii_runs::narrow_wordwise, units.data(), units.size());
}

}  // namespace

// Each copy ends where its memory ends.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::vector<char> bytes(data, data + size);
  std::vector<wide_char> units(size / 2);
  std::memcpy(units.data(), data, size / 2 * 2);
  for (int width = 0; width <= base64_vector_width; width += 16) {
    for (const std::size_t room : {size, size * 3 / 4, size / 2}) check_decoder(bytes, room, width);
    check_decoding_in_place(bytes, width);
    check_encoder(bytes, width);
    check_string_marks(bytes, width);
  }
  check_widening(bytes);
  check_narrowing(units);
  return 0;
}
