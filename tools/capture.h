// Shows captures: the lines that cftap writes, and raw streams of frames.
#pragma once

#include <string>

#include "tools/transcript.h"

// Shows what is in `file` ("-" is standard input). A malformed frame is reported on standard error
// and skipped. False if there was one, or if the stream can't be read to its end.
bool show_capture(const std::string& file, transcript& shown);
