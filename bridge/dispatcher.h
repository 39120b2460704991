// The inbound half of the bridge: a request of the extension becomes one message to the agent.
#pragma once

#include <cstdint>
#include <string>

// Takes the complete JSON text of one request, which is rewritten, and posts the message that its
// method asks for to agent_client. There is no answer. Returns 0 when the request was dispatched or
// its method isn't known; 1 when it couldn't be parsed or is malformed. Main thread only.
std::int32_t dispatch_method(std::string& text);
