#include "transport/codecs/text.h"

#include <cstring>
#include <memory>
#include <new>

#include "platform/platform.h"

namespace {

// Most texts of a page are short; their conversion needs no memory of its own.
constexpr std::size_t stack_room = 512;

std::uint32_t length_to_nul(const char* text, std::uint32_t length) {
  const void* const nul = std::memchr(text, '\0', length);
  if (nul == nullptr) return length;
  return static_cast<std::uint32_t>(static_cast<const char*>(nul) - text);
}

// A wide result comes from a text that was cut at its NUL already.
void assign_to_nul(wide_string& out, wide_view result) { out.assign(result); }

void assign_to_nul(std::string& out, std::string_view result) {
  out.assign(result.substr(0, result.find('\0')));
}

// Runs `convert` into a buffer of `room` elements, which is enough for any result, and assigns the
// result up to its first NUL.
template <class Element, class Source, class Convert>
bool convert_text(std::basic_string<Element>& out, const Source* text, std::uint32_t length,
                  std::size_t room, Convert convert) {
  if (text == nullptr) return false;
  if (length == 0) {
    out.clear();
    return true;
  }
  Element on_stack[stack_room];
  std::unique_ptr<Element[]> on_heap;
  if (room > stack_room) {
    on_heap.reset(new (std::nothrow) Element[room]);
    if (on_heap == nullptr) return false;
  }
  Element* const buffer = on_heap ? on_heap.get() : on_stack;
  const std::size_t made = convert(text, length, buffer);
  if (made == 0) return false;
  assign_to_nul(out, {buffer, made});
  return true;
}

}  // namespace

// The text is cut at its NUL before the conversion. The result is the same, since no UTF-8 sequence
// contains a NUL, and bytes are searched faster than units.
bool utf8_to_wide(wide_string& out, const char* text, std::uint32_t length) {
  if (text != nullptr) length = length_to_nul(text, length);
  return convert_text(out, text, length, length, platform::utf8_to_utf16);
}

bool wide_to_utf8(std::string& out, const wide_char* text, std::uint32_t length) {
  return convert_text(out, text, length, std::size_t{3} * length, platform::utf16_to_utf8);
}
