#include "messages/streams.h"

#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little,
              "fields go between memory and payload as they are");

bool payload_text::operator==(wide_view text) const {
  return bytes != nullptr && length == text.size() &&
         std::memcmp(bytes, text.data(), length * sizeof(wide_char)) == 0;
}

wide_string payload_text::str() const {
  wide_string text(length, 0);
  if (length > 0) std::memcpy(text.data(), bytes, length * sizeof(wide_char));
  return text;
}

payload_text cfIStream::readWide() {
  constexpr std::ptrdiff_t unit_size = sizeof(wide_char);
  std::ptrdiff_t probe = cursor_;
  // A unit that straddles the end is never looked at: the terminator has to lie inside.
  for (; end_ - probe >= unit_size; probe += unit_size) {
    if (begin_[probe] == 0 && begin_[probe + 1] == 0) {
      const payload_text text = {begin_ + cursor_,
                                 static_cast<std::size_t>(probe - cursor_) / sizeof(wide_char)};
      cursor_ = probe + unit_size;
      return text;
    }
  }
  ok_ = false;
  return {};
}

cfIStream& cfIStream::readWide(wide_string& target) {
  target = readWide().str();
  return *this;
}

cfIStream& cfIStream::readU32(std::uint32_t& target) {
  const std::ptrdiff_t field = cursor_;
  cursor_ += static_cast<std::ptrdiff_t>(sizeof target);
  if (cursor_ > end_) {
    ok_ = false;
  } else {
    std::memcpy(&target, begin_ + field, sizeof target);
  }
  return *this;
}

cfIStream& cfIStream::readU32(std::int32_t& target) {
  auto bits = static_cast<std::uint32_t>(target);
  readU32(bits);
  target = static_cast<std::int32_t>(bits);
  return *this;
}

void cfOStream::putBytes(const void* data, std::size_t size) {
  ok = ok != 0 && sink != nullptr && sink->write_bytes(data, size);
}

void cfOStream::putWide(wide_view text) {
  putBytes(text.data(), (text.size() + 1) * sizeof(wide_char));
}

void cfOStream::putU32(std::uint32_t value) { putBytes(&value, sizeof value); }
