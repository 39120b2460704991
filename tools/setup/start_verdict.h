// What a start of the host tells about the host and its library.
#pragma once

#include <string>

#include "tools/setup/host_examination.h"
#include "tools/setup/live_start.h"

void judge_start(const host_start& start, const live_start& result, const std::string& library,
                 report& out);
