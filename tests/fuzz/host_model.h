// What the host makes of its input, by plain means: with copies, maps and searches instead of what
// makes the host fast.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "messages/message.h"
#include "platform/platform.h"
#include "transport/fragment_store.h"

using texts = std::vector<std::string>;

// The messages that are unfinished, in the order in which they were touched or dropped.
struct open_message {
  std::string id, text;
  bool dropped = false;
};
using open_messages = std::vector<open_message>;

// The messages that a stream of frames completes; `result` is what ends it.
texts plainly_read(std::string_view stream, const fragment_bounds& bounds, open_messages& open,
                   std::int32_t& result);

// The class and the form of a message, or its name if it has no form.
std::string picture_of(iCfMsg& message);

// The picture of the message that a request becomes, or nothing, with the cursor there.
std::string plainly_dispatched(std::string request, const platform::screen_point* cursor);
