// Shows captures: the lines that cftap keeps, and streams of frames as they were.
#pragma once

#include <string>

#include "tools/transcript.h"

// Shows what is in `file` ("-" is standard input). A frame that isn't in order is reported on
// standard error and skipped; false if there was one, or if the stream can't be read to its end.
bool show_capture(const std::string& file, transcript& shown);
