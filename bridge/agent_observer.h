// The outbound half of the bridge: what the agent sends becomes notifications to the extension.
// Nothing else sends replies.
#pragma once

#include <chrono>

#include "messages/agent_interface.h"

// The one observer of the process. It has no fields, so any number of threads may be in `notify`.
//
// It is never destroyed, since a thread of the library may call it at any moment until the library
// is unloaded. close_agent_observer ends it.
extern iCfClientObs& agentObserver;

// From here on `notify` returns 0 at once and touches nothing. Waits for the calls in progress, for
// at most `timeout`; true if none is left.
bool close_agent_observer(std::chrono::milliseconds timeout);
