// The process has to be gone within a second of the end of its input. How that second is divided.
#pragma once

#include <chrono>

#include "transport/reply_writer.h"

// How long the end of the process waits for notifications that are still being sent.
inline constexpr std::chrono::milliseconds notification_timeout{500};

// How long the library may take to end after that.
inline constexpr std::chrono::milliseconds unload_timeout{400};

// The rest is reserve, for a machine that has other things to do too. A main thread that is stuck
// in a notification leaves without these two waits.
static_assert(notification_timeout + unload_timeout < std::chrono::seconds(1));
static_assert(abandoned_timeout <= notification_timeout);
