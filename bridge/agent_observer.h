// The outbound half of the bridge: what the agent sends becomes notifications to the extension. The
// only sender of replies.
#pragma once

#include <chrono>

#include "messages/agent_interface.h"

// The one observer of the process. It has no fields, so any number of threads may be in `notify`.
//
// Its destructor never runs: that would put the interface's pure function into its table, and a
// thread of the library may call at any moment until the library is unloaded. What ends it is
// close_agent_observer.
extern iCfClientObs& agentObserver;

// From here on `notify` returns 0 at once and touches nothing. Waits for the calls that are under
// way, for `patience` at the most; true if none is left.
bool close_agent_observer(std::chrono::milliseconds patience);
