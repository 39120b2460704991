// The host process: reads requests for as long as its input lives and hands them to the agent. What
// the agent has to say goes out on the thread on which it says it, which is seldom this one.

#include <chrono>
#include <string>

#include "bridge/agent_observer.h"
#include "bridge/dispatcher.h"
#include "host/diagnostics.h"
#include "host/exit_actions.h"
#include "host/exit_value.h"
#include "messages/client_library.h"
#include "platform/platform.h"
#include "platform/wiping.h"
#include "transport/frame_reader.h"

namespace {

// How long the library may take to end. Together with the patience for notifications that is less
// than the second in which a host is gone after its input.
constexpr std::chrono::milliseconds unload_patience{400};

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

// The host may wait long for the next message. What is left of this one on the stack goes first.
void serve_input() {
  while (serve_message()) platform::wipe_stack();
}

exit_value run() {
  platform::forbid_memory_dumps();
  platform::occupy_standard_streams();
  register_exit_actions();
  read_dump_switch();
  platform::prepare_standard_streams();
  if (!load_client_next_to(platform::own_module())) return exit_no_library;
  agent_client = get_client();
  if (agent_client == nullptr) return exit_no_interface;
  agent_client->addObserver(&agentObserver);

  serve_input();

  // A notification that is stuck, in a full pipe or in the library, may hold the stream, and the
  // runtime's way out would wait for that stream for ever.
  if (!close_agent_observer(exit_patience)) platform::leave_now(exit_input_ended);
  return exit_input_ended;
}

}  // namespace

// The browser passes arguments; they have no effect.
int main() { platform::end_process(run(), unload_patience); }
