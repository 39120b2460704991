// What the host makes of its input, by plain means: with copies, maps and searches instead of what
// makes the host fast.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "messages/message.h"
#include "platform/platform.h"

using texts = std::vector<std::string>;

// The text so far of each unfinished message, by id.
using open_messages = std::map<std::string, std::string>;

// The messages that a stream of frames completes; `result` is what ends it.
texts plainly_read(std::string_view stream, open_messages& open, std::int32_t& result);

// The class and the form of a message, or its name if it has no form.
std::string picture_of(iCfMsg& message);

// The picture of the message that a request becomes, or nothing, with the cursor there.
std::string plainly_dispatched(std::string request, const platform::screen_point* cursor);
