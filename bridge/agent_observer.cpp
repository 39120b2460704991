#include "bridge/agent_observer.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "bridge/notify_gate.h"
#include "bridge/rendering.h"
#include "host/diagnostics.h"
#include "json/writer.h"
#include "messages/commands.h"
#include "messages/records.h"
#include "platform/wiping.h"
#include "transport/reply_writer.h"

namespace {

// Holds the settings of most users.
constexpr std::size_t settings_size = 2000;

// A payload may be longer than the form in it. Room is wiped when it is given back, used or not.
constexpr std::size_t largest_guess = std::size_t{4} * 1024 * 1024;

// `render` puts the members of the notification into the stream. It has room for `size` bytes from
// the start, and takes more when it needs more.
template <class Render>
void send_notification(const char* name, std::size_t size, Render render) {
  pair_stream stream;
  stream.room(size);
  json_begin(json_begin(stream, '{'), name, '{');
  render(stream);
  json_end(json_end(stream, '}'), '}');
  stream.drop_last(',');
  send_reply(stream.str());
}

pair_stream& render_message(pair_stream& stream, const CfMsgWebsite& message) {
  return render_website(stream, message);
}

pair_stream& render_message(pair_stream& stream, const CfMsgOpenUrl& message) {
  json_put_wide(stream, "url", message.url);
  return json_put_wide(stream, "uuid", message.uuid);
}

// Reads the form at the stream's position, and sends it if it is whole.
template <class Message>
void forward(cfIStream& stream, const char* notification) {
  // Wide text takes twice as much as its narrow form, which leaves room for names and marks.
  const std::size_t size = std::min(stream.left(), largest_guess);
  auto* const message = new Message;
  message->addRef();
  if (message->read(stream)) {
    send_notification(notification, size,
                      [&](pair_stream& body) { render_message(body, *message); });
  }
  message->release();
}

void forward_website(cfIStream& stream, const char* notification) {
  forward<CfMsgWebsite>(stream, notification);
}

// An outer type string stands in front of a whole form.
void forward_wrapped_website(cfIStream& stream, const char* notification) {
  (void)stream.readWide();
  forward<CfMsgWebsite>(stream, notification);
}

void forward_open_url(cfIStream& stream, const char* notification) {
  forward<CfMsgOpenUrl>(stream, notification);
}

struct carried_message {
  cfName type;
  const char* notification;
  void (*forward)(cfIStream& stream, const char* notification);
};

constexpr carried_message carried_messages[] = {
    {CfMsgWebsite::type_name, "coffer_info_update", forward_website},
    {website_response_name, "page_input_update", forward_wrapped_website},
    {website_navigate_name, "navigate_login", forward_wrapped_website},
    {CfMsgOpenUrl::type_name, "coffer-open-url", forward_open_url},
};

// Compares the string at the start of the payload, terminator included, without looking behind the
// payload's end.
bool starts_with(const npc_payload& payload, const cfName& type) {
  const std::size_t size = (wide_view(type.text()).size() + 1) * sizeof(wide_char);
  return payload.length >= static_cast<std::ptrdiff_t>(size) &&
         std::memcmp(payload.bytes, type.text(), size) == 0;
}

void notify_carried(const void* npc) {
  const npc_payload payload = payload_of(npc);
  for (const carried_message& carried : carried_messages) {
    if (!starts_with(payload, carried.type)) continue;
    cfIStream stream(payload.bytes, payload.length);
    carried.forward(stream, carried.notification);
    return;
  }
}

void notify_coffer_data(const void* data) {
  send_notification("coffer-init-data", settings_size,
                    [&](pair_stream& body) { render_coffer_data(body, data); });
}

void notify_set_values(const void* values) {
  using namespace set_values_record;
  if (record_int(values, has_settings_offset) == 0) return;
  send_notification("coffer-set-settings", settings_size, [&](pair_stream& body) {
    render_settings(body, record_settings(values, settings_offset));
  });
}

notify_gate gate;

class agent_observer final : public iCfClientObs {
 public:
  constexpr agent_observer() = default;

  // No exception of the host's may reach the library.
  std::int32_t notify(iCfMsg* object) noexcept override {
    if (!gate.enter()) return 0;
    object->addRef();
    // One object may answer to several names; each is acted on.
    if (const void* npc = object->query(npc_name)) notify_carried(npc);
    if (const void* data = object->query(coffer_data_name)) notify_coffer_data(data);
    if (const void* values = object->query(set_values_name)) notify_set_values(values);
    if (!dump_off) log_line("Test");
    platform::wipe_stack();
    gate.leave();
    return 0;
  }
};

// A union doesn't destroy its member, so the observer stays whole to the last instruction.
union observer_storage {
  agent_observer observer;

  constexpr observer_storage() : observer() {}
  ~observer_storage() {}  // NOLINT(modernize-use-equals-default): that would delete it
};

constinit observer_storage storage;

}  // namespace

iCfClientObs& agentObserver = storage.observer;

bool close_agent_observer(std::chrono::milliseconds patience) { return gate.close(patience); }
