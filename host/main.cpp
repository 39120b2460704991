// The host process: reads requests until its input ends and hands them to the agent. Notifications
// go out on the threads of the client library.

#include <string>

#include "bridge/agent_observer.h"
#include "bridge/dispatcher.h"
#include "bridge/settings_dump.h"
#include "host/diagnostics/diagnostics.h"
#include "host/exit_actions.h"
#include "host/exit_times.h"
#include "host/exit_value.h"
#include "memory/spare_memory.h"
#include "messages/loader/client_library.h"
#include "platform/platform.h"
#include "platform/wiping.h"
#include "transport/frame_reader.h"

namespace {

iCfClient* get_client() {
  if (client_library.module == nullptr || client_library.api == nullptr) return nullptr;
  return static_cast<iCfClient*>(client_library.api->getInterface(client_interface));
}

// False once no more message comes.
bool serve_message() {
  std::string message;
  if (read_message(message) != read_complete) return false;
  dispatch_method(message);
  return true;
}

// The next message may be long in coming, so memory that this one has used is wiped first.
void serve_input() {
  while (serve_message()) {
    platform::wipe_stack();
    give_spare_memory_back();
  }
}

exit_value run() {
  platform::forbid_memory_dumps();
  platform::restrict_library_search();
  (void)platform::forbid_cancellation();
  platform::occupy_standard_streams();
  register_exit_actions();
  read_dump_switch();
  settings_dump = dump_settings;
  platform::prepare_standard_streams();
  if (!load_client_next_to(platform::own_module())) return exit_no_library;
  agent_client = get_client();
  if (agent_client == nullptr) return exit_no_interface;
  agent_client->addObserver(&agentObserver);

  serve_input();

  // A notification that is stuck in a full pipe or in the library may hold the stream, and the
  // runtime's ordinary exit would wait for that stream for ever.
  if (!close_agent_observer(notification_timeout)) platform::leave_now(exit_input_ended);
  return exit_input_ended;
}

}  // namespace

// The browser passes arguments; they have no effect.
int main() { platform::end_process(run(), unload_timeout); }
