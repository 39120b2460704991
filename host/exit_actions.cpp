#include "host/exit_actions.h"

#include <cstdlib>

#include "bridge/agent_observer.h"
#include "messages/client_library.h"
#include "transport/stdout_lock.h"

namespace {

void end_stdout_lock() { stdout_lock.end(); }

// Nobody is inside any more at this point, or the process would have left without exit actions.
void end_agent_observer() { close_agent_observer(std::chrono::milliseconds(0)); }

}  // namespace

void register_exit_actions() {
  // The runtime calls them in reverse.
  std::atexit(end_stdout_lock);
  std::atexit(unload_client_library);
  std::atexit(end_agent_observer);
}
