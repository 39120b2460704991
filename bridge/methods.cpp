#include "bridge/methods.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "bridge/method_names.h"
#include "bridge/page.h"
#include "messages/commands.h"
#include "messages/loader/client_library.h"
#include "messages/website.h"
#include "platform/platform.h"

namespace {

// The library takes over the reference. It may not end this thread, which alone reads requests: if
// it tries, the process ends at once.
template <class Message>
void post(message_ref<Message> message) noexcept {
  agent_client->post(message.detach());
}

// A website message of the page in `data`, or none if there is no page.
message_ref<CfMsgWebsite> website_of(const json_node* data) {
  if (data == nullptr || data->kind != kind_object) return {};
  message_ref<CfMsgWebsite> message = make_website();
  if (!page_json_to_website(data, message.get())) return {};
  return message;
}

bool handle_page(const json_node* data) {
  message_ref<CfMsgWebsite> message = website_of(data);
  if (!message) return false;
  post(std::move(message));
  return true;
}

template <console_code Code>
bool handle_console(const json_node*) {
  post(make_run_console(Code));
  return true;
}

bool handle_get_settings(const json_node*) {
  post(make_get_settings());
  return true;
}

bool handle_lock(const json_node*) {
  post(make_message<CfMsgCfDbCmd>());
  return true;
}

// The dialog needs some position: without a cursor it is the corner of the screen.
bool handle_unlock(const json_node*) {
  platform::screen_point point;
  (void)platform::cursor_position(point);
  message_ref<CfMsgUnLockDb> message = make_unlock_db();
  message->pos = CfWndPos(position_stored, point.x, point.y);
  post(std::move(message));
  return true;
}

// A drop-down may come without a page, and it marks itself as one.
bool handle_drop_down(const json_node* data) {
  const bool without_page = data != nullptr && data->kind == kind_null;
  message_ref<CfMsgWebsite> message = without_page ? make_website() : website_of(data);
  if (!message) return false;
  message->props.set(u"user-state", u"drop-down", true);
  platform::screen_point point;
  if (platform::cursor_position(point)) {
    message->pos = CfWndPos(position_stored, point.x, point.y);
  }
  post(std::move(message));
  return true;
}

constexpr method method_table[] = {
    {"get-info-for-page", handle_page},
    {"save-info-from-page", handle_page},
    {"open-coffer", handle_console<console_open>},
    {"open-settings", handle_console<console_settings>},
    {"configure-coffer", handle_console<console_configure>},
    {"get-settings", handle_get_settings},
    {"lock-coffer", handle_lock},
    {"unlock-coffer", handle_unlock},
    {"drop-down", handle_drop_down},
};

static_assert(std::ranges::equal(method_table, method_names, {}, &method::name),
              "others are told of the same methods");

}  // namespace

std::span<const method> methods() { return method_table; }
