// The child's side of cfcheck: does to a library what the host does in its life.
#pragma once

#include <chrono>
#include <string>

#include "tools/examination_child.h"

// The library's path is absolute. Ends the process.
[[noreturn]] void play_host(const std::string& library, std::chrono::milliseconds wait,
                            account& told);
