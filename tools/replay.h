// Plays the browser's side of a capture to a host.
#pragma once

#include <chrono>
#include <string>

// Starts `host`, or the recorded host if that is empty, in the way that the capture in `file` says.
// Sends it what the browser sent, and reports on standard output where its answers or its end
// differ from the recorded ones. Waits for an answer until the host is quiet for `quiet_time`.
// False if something differs or fails; failures are reported on standard error.
bool replay_capture(const std::string& file, const std::string& host,
                    std::chrono::milliseconds quiet_time);
