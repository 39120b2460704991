#include "host/exit_actions.h"

#include <cstdlib>

#include "bridge/agent_observer.h"
#include "messages/client_library.h"
#include "transport/stdout_lock.h"

namespace {

void end_stdout_lock() { stdout_lock.end(); }

// After the end of input nobody is inside any more, or the process would have left without exit
// actions. But the library may end the process too, with threads of its own in the middle of a
// frame. One that does so from inside a notification waits for itself in vain.
void end_agent_observer() { close_agent_observer(exit_patience); }

}  // namespace

void register_exit_actions() {
  // The runtime calls them in reverse.
  std::atexit(end_stdout_lock);
  std::atexit(unload_client_library);
  std::atexit(end_agent_observer);
}
