#include "messages/streams.h"

#include <bit>
#include <cstring>

#include "messages/deleting_destructor.h"
#include "platform/portable/vectors.h"

static_assert(std::endian::native == std::endian::little,
              "fields go between memory and payload as they are");

namespace {

// Bytes before the first zero unit; if there is none, the bytes of all whole units. Eight units are
// looked at together where the processor can, otherwise four in one word. There a unit shows in
// `zeros` if subtracting one makes it negative and it wasn't before. A borrow can only set bits
// above the lowest one found, so the lowest one is exact.
std::ptrdiff_t zero_unit_offset(const unsigned char* bytes, std::ptrdiff_t size) {
  constexpr std::uint64_t ones = 0x0001000100010001;
  constexpr std::uint64_t tops = 0x8000800080008000;
  std::ptrdiff_t at = 0;
#if CFHOST_HAS_VECTORS
  for (; size - at >= 16; at += 16) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
    const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi16(units, _mm_setzero_si128()));
    if (zeros != 0) return at + __builtin_ctz(static_cast<unsigned>(zeros));
  }
#endif
  for (; size - at >= 8; at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes + at, sizeof word);
    const std::uint64_t zeros = (word - ones) & ~word & tops;
    if (zeros != 0) return at + __builtin_ctzll(zeros) / 16 * std::ptrdiff_t{2};
  }
  while (size - at >= 2 && (bytes[at] != 0 || bytes[at + 1] != 0)) at += 2;
  return at;
}

}  // namespace

bool payload_text::operator==(wide_view text) const {
  return bytes != nullptr && length == text.size() &&
         std::memcmp(bytes, text.data(), length * sizeof(wide_char)) == 0;
}

wide_string payload_text::str() const {
  wide_string text(length, 0);
  if (length > 0) std::memcpy(text.data(), bytes, length * sizeof(wide_char));
  return text;
}

void* cfIStream::deletingDestructor(std::uint32_t flags) { return destroy_by_flags(this, flags); }

payload_text cfIStream::readWide() {
  constexpr std::ptrdiff_t unit_size = sizeof(wide_char);
  const auto bytes_left = static_cast<std::ptrdiff_t>(left());
  const auto* const bytes = reinterpret_cast<const unsigned char*>(cursor);
  const std::ptrdiff_t size = zero_unit_offset(bytes, bytes_left);
  // A unit that crosses the end is never looked at: the terminator has to lie inside.
  if (bytes_left - size < unit_size) {
    ok = false;
    return {};
  }
  cursor += static_cast<std::uintptr_t>(size + unit_size);
  return {bytes, static_cast<std::size_t>(size) / sizeof(wide_char)};
}

cfIStream& cfIStream::readWide(wide_string& target) {
  target = readWide().str();
  return *this;
}

cfIStream& cfIStream::readU32(std::uint32_t& target) {
  const std::uintptr_t field = cursor;
  cursor += sizeof target;
  if (cursor > end) {
    ok = false;
  } else {
    std::memcpy(&target, reinterpret_cast<const void*>(field), sizeof target);
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
