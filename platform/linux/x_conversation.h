// The few words of the X protocol that it takes to ask for the pointer. Everything that a server
// says is bounded before it is used.
#pragma once

#include <chrono>
#include <string_view>

#include "platform/platform.h"

namespace platform {

// The kind of key that is spoken here.
inline constexpr std::string_view x_key_kind = "MIT-MAGIC-COOKIE-1";

// Asks the server at the other end of `server`, a connected socket that doesn't wait, for the
// pointer on the root window of `screen`. False when it refuses, says what it shouldn't, or isn't
// through by `deadline`. An empty key is none.
bool ask_for_pointer(int server, int screen, std::string_view key,
                     std::chrono::steady_clock::time_point deadline, screen_point& point);

}  // namespace platform
