#include "bridge/notifications.h"

#include <algorithm>

#include "bridge/rendering.h"
#include "json/writer.h"
#include "messages/agent_interface.h"
#include "messages/commands.h"
#include "messages/records.h"
#include "transport/reply_writer.h"

namespace {

// Enough for the settings of most users.
constexpr std::size_t settings_size = 2000;

// A payload may be longer than the form in it, and room is wiped when it is freed, used or not.
constexpr std::size_t largest_guess = std::size_t{4} * 1024 * 1024;

// `render` puts the members of the notification into the stream, which has room for `size` bytes
// from the start and grows when it needs more.
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

template <class Message>
void forward(cfIStream& stream, const char* name,
             pair_stream& (*render)(pair_stream& body, const Message& message)) {
  // Wide text takes twice as many bytes as its narrow form, which leaves room for names and
  // punctuation.
  const std::size_t size = std::min(stream.left(), largest_guess);
  const message_ref<Message> message = make_message<Message>();
  if (!message->read(stream)) return;
  send_notification(name, size, [&](pair_stream& body) { render(body, *message); });
}

void forward_website(cfIStream& stream, const char* name) {
  forward<CfMsgWebsite>(stream, name, render_website);
}

void forward_open_url(cfIStream& stream, const char* name) {
  forward<CfMsgOpenUrl>(stream, name, render_open_url);
}

void send_coffer_data(const void* record, const char* name) {
  const auto& data = *static_cast<const coffer_data_record*>(record);
  send_notification(name, settings_size,
                    [&](pair_stream& body) { render_coffer_data(body, data); });
}

void send_set_values(const void* record, const char* name) {
  const auto& values = *static_cast<const set_values_record*>(record);
  if (values.has_settings == 0) return;
  send_notification(name, settings_size,
                    [&](pair_stream& body) { render_settings(body, values.settings); });
}

constexpr packet_notification packet_table[] = {
    {CfMsgWebsite::type_name, "coffer_info_update", false, forward_website},
    {website_response_name, "page_input_update", true, forward_website},
    {website_navigate_name, "navigate_login", true, forward_website},
    {CfMsgOpenUrl::type_name, "coffer-open-url", false, forward_open_url},
};

constexpr record_notification record_table[] = {
    {coffer_data_record::type_name, "coffer-init-data", send_coffer_data},
    {set_values_record::type_name, "coffer-set-settings", send_set_values},
};

}  // namespace

std::span<const packet_notification> packet_notifications() { return packet_table; }
std::span<const record_notification> record_notifications() { return record_table; }
