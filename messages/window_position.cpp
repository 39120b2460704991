#include "messages/window_position.h"

bool CfWndPos::write(cfOStream& s) const {
  s.putU32(flags);
  s.putU32(static_cast<std::uint32_t>(x));
  s.putU32(static_cast<std::uint32_t>(y));
  return s.ok != 0;
}

// A missing word reads as zero.
bool CfWndPos::read(cfIStream& s) {
  flags = 0;
  x = y = 0;
  s.readU32(flags).readU32(x).readU32(y);
  return s.ok;
}
