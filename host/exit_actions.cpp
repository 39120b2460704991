#include "host/exit_actions.h"

#include <cstdlib>

#include "bridge/agent_observer.h"
#include "host/exit_times.h"
#include "messages/loader/client_library.h"

namespace {

// After the end of input nobody is inside any more: otherwise the process would have left without
// exit actions. But the library may end the process too, while its threads are in the middle of a
// frame. If it does so from inside a notification, this waits in vain for that notification.
void end_agent_observer() { close_agent_observer(notification_timeout); }

}  // namespace

void register_exit_actions() {
  // The runtime calls them in reverse.
  std::atexit(unload_client_library);
  std::atexit(end_agent_observer);
}
