#include "bridge/dispatcher.h"

#include <string_view>

#include "bridge/page.h"
#include "host/diagnostics.h"
#include "json/parser.h"
#include "messages/client_library.h"
#include "messages/commands.h"
#include "messages/website.h"
#include "platform/platform.h"

namespace {

// The two members of a request that are read; null where there was no usable one.
struct request {
  const char* method = nullptr;
  const json_node* data = nullptr;
};

// A handler builds the message of its method and posts it; false means that the data is bad.
using handler = bool (*)(const json_node* data);

struct method_entry {
  std::string_view name;
  handler handle;
};

void post(iCfMsg* message) { agent_client->post(message); }

// A website message of the page in `data`, or null if there is none.
CfMsgWebsite* website_of(const json_node* data) {
  if (data == nullptr || data->kind != kind_object) return nullptr;
  CfMsgWebsite* const message = make_website();
  if (page_json_to_website(data, message)) return message;
  message->release();
  return nullptr;
}

bool handle_page(const json_node* data) {
  CfMsgWebsite* const message = website_of(data);
  if (message == nullptr) return false;
  post(message);
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
  auto* const message = new CfMsgCfDbCmd;
  message->addRef();
  post(message);
  return true;
}

// The dialog needs some place: without a cursor it is the corner of the screen.
bool handle_unlock(const json_node*) {
  platform::screen_point point;
  (void)platform::cursor_position(point);
  CfMsgUnLockDb* const message = make_unlock_db();
  message->pos = CfWndPos(position_stored, point.x, point.y);
  post(message);
  return true;
}

// A drop-down may come without a page, and says of itself what it is.
bool handle_drop_down(const json_node* data) {
  const bool without_page = data != nullptr && data->kind == kind_null;
  CfMsgWebsite* const message = without_page ? make_website() : website_of(data);
  if (message == nullptr) return false;
  message->props.set(u"user-state", u"drop-down", true);
  platform::screen_point point;
  if (platform::cursor_position(point)) {
    message->pos = CfWndPos(position_stored, point.x, point.y);
  }
  post(message);
  return true;
}

constexpr method_entry method_table[] = {
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

const json_node* parse_request(std::string& text, node_arena& arena) {
  const char* errorPos = nullptr;
  const char* errorDesc = nullptr;
  const json_node* const root = json_parse(text.data(), errorPos, errorDesc, arena);
  if (!dump_off) {
    log_line("json_parse: root=%p errorPos=%s errorDesc=%s\r\n", static_cast<const void*>(root),
             text_or_na(errorPos), text_or_na(errorDesc));
  }
  return root;
}

// The last "method" that is a string and the last "data" of any kind.
request read_request(const json_node& root) {
  request r;
  for (const json_node* child = root.first_child; child != nullptr; child = child->next_sibling) {
    if (child->name == nullptr) continue;
    const std::string_view name = child->name;
    if (name == "method" && child->kind == kind_string) r.method = child->value.string;
    if (name == "data") r.data = child;
  }
  return r;
}

const method_entry* find_method(std::string_view name) {
  for (const method_entry& entry : method_table) {
    if (entry.name == name) return &entry;
  }
  return nullptr;
}

}  // namespace

std::int32_t dispatch_method(std::string& text) {
  scoped_node_arena arena;
  const json_node* const root = parse_request(text, arena);
  if (root == nullptr) return 1;

  const request r = read_request(*root);
  if (r.method == nullptr || *r.method == '\0') {
    if (!dump_off) log_line("Malformed message received (no method):%s", text.c_str());
    return 1;
  }
  const method_entry* const method = find_method(r.method);
  if (method != nullptr && !method->handle(r.data)) {
    if (!dump_off) log_line("Malformed message received (bad data):%s", text.c_str());
    return 1;
  }
  return 0;
}
