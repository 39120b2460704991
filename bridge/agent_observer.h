// The outbound half of the bridge: what the agent sends becomes notifications to the extension. The
// only sender of replies.
#pragma once

#include <chrono>

#include "messages/agent_interface.h"

// The one observer of the process. It has no fields, so any number of threads may be in `notify`.
//
// It has nothing to destroy, and a thread of the library may call it at any moment until the
// library is unloaded. What ends it is close_agent_observer.
extern iCfClientObs& agentObserver;

// From here on `notify` returns 0 at once and touches nothing. Waits for the calls that are under
// way, for `timeout` at the most; true if none is left.
bool close_agent_observer(std::chrono::milliseconds timeout);
