// The lock that makes one frame atomic on standard output.
#pragma once

#include "platform/checked_mutex.h"

// Held over the length, the text and the flush of one frame, never across frames. As a static
// object it can be used from before main until after the exit actions.
extern checked_mutex stdout_lock;
