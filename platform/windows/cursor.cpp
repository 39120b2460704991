#include <windows.h>

#include "platform/platform.h"

namespace platform {

bool cursor_position(screen_point& point) {
  POINT position = {};
  if (GetCursorPos(&position) == 0) return false;
  point = {position.x, position.y};
  return true;
}

}  // namespace platform
