#pragma once

#include <cstdint>

#include "messages/streams.h"

// What the host writes to `flags` when it stores a position.
constexpr std::uint32_t position_stored = 3;

// A position on the screen, in pixels. The order of the virtual functions is part of the interface.
// There is no slot for a deleting destructor: a message holds the position as a member.
struct CfWndPos {
  std::uint32_t flags = 0;  // 0: no position
  std::int32_t x = 0;
  std::int32_t y = 0;

  CfWndPos() = default;
  CfWndPos(std::uint32_t f, std::int32_t px, std::int32_t py) : flags(f), x(px), y(py) {}

  virtual bool write(cfOStream& s) const;
  virtual bool read(cfIStream& s);
};
