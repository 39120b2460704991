// The child's side of cfcheck: treats a library as the host does from start to end.
#pragma once

#include <chrono>
#include <string>

#include "tools/examination_child.h"

// The library's path must be absolute. Ends the process.
[[noreturn]] void play_host(const std::string& library, std::chrono::milliseconds wait,
                            account& told);
