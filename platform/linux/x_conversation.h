// The little of the X protocol that it takes to ask for the pointer. Everything that a server says
// is bounded before it is used.
#pragma once

#include <chrono>
#include <string_view>

#include "platform/platform.h"

namespace platform {

// The one kind of key that is supported.
inline constexpr std::string_view x_key_kind = "MIT-MAGIC-COOKIE-1";

// Asks the server at the other end of `server`, a connected non-blocking socket, for the pointer's
// position on the root window of `screen`. False if it refuses, breaks the protocol or isn't done
// by `deadline`. An empty key means that there is none.
bool ask_for_pointer(int server, int screen, std::string_view key,
                     std::chrono::steady_clock::time_point deadline, screen_point& point);

}  // namespace platform
