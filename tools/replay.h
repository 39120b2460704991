// Plays the browser's side of a capture towards a host.
#pragma once

#include <chrono>
#include <string>

// Starts the host `host`, or the recorded one if it is empty, as the capture in `file` tells, sends
// it what the browser sent, and reports on standard output where its answers and its end are others
// than the recorded ones. An answer is waited for until the host is quiet for `quiet_time`. False
// if something differs or fails; failures are told on standard error.
bool replay_capture(const std::string& file, const std::string& host,
                    std::chrono::milliseconds quiet_time);
