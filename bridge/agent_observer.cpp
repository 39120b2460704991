#include "bridge/agent_observer.h"

#include <cstring>

#include "bridge/notifications.h"
#include "bridge/notify_gate.h"
#include "host/diagnostics/diagnostics.h"
#include "memory/spare_memory.h"
#include "messages/records.h"
#include "platform/platform.h"
#include "platform/wiping.h"

namespace {

// Compares the string at the start of the payload, terminator included, without reading past the
// payload's end.
bool starts_with(const npc_payload& payload, const cfName& type) {
  const std::size_t size = (wide_view(type.text()).size() + 1) * sizeof(wide_char);
  return payload.length >= static_cast<std::ptrdiff_t>(size) &&
         std::memcmp(payload.bytes, type.text(), size) == 0;
}

void notify_packet(const npc_record& npc) {
  const npc_payload payload = payload_of(npc);
  for (const packet_notification& n : packet_notifications()) {
    if (!starts_with(payload, n.type)) continue;
    cfIStream stream(payload.bytes, payload.length);
    if (n.is_wrapped) (void)stream.readWide();
    n.send(stream, n.name);
    return;
  }
}

// One object may answer to several names; all of them are handled.
void notify_all_of(iCfMsg& object) {
  if (const void* npc = object.query(npc_record::type_name)) {
    notify_packet(*static_cast<const npc_record*>(npc));
  }
  for (const record_notification& n : record_notifications()) {
    if (const void* record = object.query(n.type)) n.send(record, n.name);
  }
}

notify_gate gate;

class agent_observer final : public iCfClientObs {
 public:
  // Does nothing: the observer is never destroyed.
  void* deletingDestructor(std::uint32_t) override { return this; }

  // No exception of the host's may reach the library.
  std::int32_t notify(iCfMsg* object) noexcept override {
    if (!gate.enter()) return 0;
    const int cancellation = platform::forbid_cancellation();
    object->addRef();
    notify_all_of(*object);
    if (!dump_off) log_line("Test");
    platform::wipe_stack();
    give_spare_memory_back();
    gate.leave();
    platform::allow_cancellation(cancellation);
    return 0;
  }
};

constinit agent_observer observer;

}  // namespace

iCfClientObs& agentObserver = observer;

bool close_agent_observer(std::chrono::milliseconds timeout) { return gate.close(timeout); }
