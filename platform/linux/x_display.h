// Whether there is an X server that is worth connecting to.
#pragma once

#include <chrono>

namespace platform {

// A server on this machine answers within microseconds. One that hangs must not stop the requests.
constexpr std::chrono::milliseconds x_answer_timeout{250};

// True if the server of the environment's DISPLAY is on this machine and answers a greeting in
// time, and nothing else that connecting needs could make it wait.
bool x_server_answers();

}  // namespace platform
