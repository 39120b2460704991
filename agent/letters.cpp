#include "agent/letters.h"

namespace {

// From U+00C0 to U+017F.
constexpr char without_marks[] =
    "aaaaaaaceeeeiiiidnooooo*ouuuuytsaaaaaaaceeeeiiiidnooooo*ouuuuyty"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkklllllll"
    "lllnnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";

bool is_between(wide_char c, wide_char first, wide_char last) { return c >= first && c <= last; }

wide_char moved(wide_char c, int by) { return static_cast<wide_char>(c + by); }

// In these blocks capital and small letters alternate. Whether the capital has the even or the odd
// number depends on the block.
bool is_even_capital(wide_char c) {
  const bool block = is_between(c, 0x100, 0x137) || is_between(c, 0x14A, 0x177);
  return block && c % 2 == 0 && c != 0x130;
}

bool is_odd_capital(wide_char c) {
  return (is_between(c, 0x139, 0x148) || is_between(c, 0x179, 0x17E)) && c % 2 == 1;
}

}  // namespace

wide_char small_letter(wide_char c) {
  if (is_between(c, u'A', u'Z')) return moved(c, 0x20);
  if (c < 0xC0) return c;
  if (is_between(c, 0xC0, 0xDE) && c != 0xD7) return moved(c, 0x20);
  if (is_even_capital(c) || is_odd_capital(c)) return moved(c, 1);
  if (c == 0x178) return 0xFF;
  if (is_between(c, 0x391, 0x3A9) && c != 0x3A2) return moved(c, 0x20);  // Greek
  if (is_between(c, 0x410, 0x42F)) return moved(c, 0x20);                // Cyrillic
  if (is_between(c, 0x400, 0x40F)) return moved(c, 0x50);
  return c;
}

wide_char plain_letter(wide_char c) {
  if (is_between(c, 0xFF01, 0xFF5E)) c = moved(c, -0xFEE0);
  if (is_between(c, 0xC0, 0x17F)) return static_cast<wide_char>(without_marks[c - 0xC0]);
  c = small_letter(c);
  return c == u'ё' ? u'е' : c;
}
