#include "tests/fuzz/host_model.h"

#include <algorithm>
#include <cstring>

#include "json/parser.h"
#include "messages/commands.h"
#include "messages/website.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/payload.h"
#include "transport/codecs/text.h"
#include "transport/frame_reader.h"

namespace {

using node_list = std::vector<const json_node*>;

node_list members_of(const json_node& node) {
  node_list all;
  for (const json_node* c = node.first_child; c != nullptr; c = c->next_sibling) all.push_back(c);
  return all;
}

// A parsed text, which it owns together with the tree. The parser has a fuzz target of its own.
struct tree {
  explicit tree(std::string source) : text(std::move(source)) {
    const char *position = nullptr, *description = nullptr;
    if (const json_node* root = json_parse(text.data(), position, description, arena)) {
      members = members_of(*root);
    }
  }

  std::string text;
  scoped_node_arena arena;
  node_list members;
};

// The last member with this name and of one of two kinds, or null.
const json_node* last_of(const node_list& members, std::string_view name, json_kind kind,
                         json_kind other) {
  const json_node* found = nullptr;
  for (const json_node* m : members) {
    const bool named = m->name != nullptr && name == m->name;
    if (named && (m->kind == kind || m->kind == other)) found = m;
  }
  return found;
}

std::string string_of(const node_list& members, std::string_view name) {
  const json_node* const found = last_of(members, name, kind_string, kind_string);
  return found == nullptr ? "" : found->value.string;
}

std::int32_t integer_of(const node_list& members, std::string_view name, std::int32_t otherwise) {
  const json_node* const found = last_of(members, name, kind_int, kind_int);
  return found == nullptr ? otherwise : found->value.integer;
}

wide_string widened(const json_node* text) {
  wide_string wide;
  if (text == nullptr || text->kind != kind_string) return wide;
  const auto length = static_cast<std::uint32_t>(std::strlen(text->value.string));
  require(utf8_to_wide(wide, text->value.string, length), "anything is widened");
  return wide;
}

// null empties a text.
void put(propsW_t& bag, wide_view key, const node_list& members, std::string_view name) {
  bag.put(key, widened(last_of(members, name, kind_string, kind_null)));
}

// Names of several words are joined by hyphens in a bag.
void put_all(propsW_t& bag, const node_list& members,
             std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) {
    wide_string key(name.begin(), name.end());
    std::replace(key.begin(), key.end(), u'_', u'-');
    put(bag, key, members, name);
  }
}

void put_page(CfMsgWebsite& page, const json_node& data) {
  const node_list members = members_of(data);
  page.sender = widened(last_of(members, "sender", kind_string, kind_null));
  put_all(page.props, members,
          {"source", "title", "user_state", "document_state", "context", "before_url", "after_url",
           "source_event", "source_context", "click_source", "submit_source"});
  if (const json_node* login = last_of(members, "navigate_login", kind_string, kind_string)) {
    page.props.put(u"navigate-login", widened(login));
  }
  if (integer_of(members, "fHasMultipleForms", 0) != 0) {
    page.props.put(u"has-multiple-forms", u"1");
  }
  if (integer_of(members, "fIsPartiallyFilled", 0) != 0) page.props.put(u"partially-filled", u"1");
  for (const json_node* list : members) {
    if (list->name == nullptr || list->name != std::string_view("inputs")) continue;
    if (list->kind != kind_array) continue;
    for (const json_node* input : members_of(*list)) {
      if (input->kind != kind_object) continue;
      propsW_t& bag = page.inputs.emplace_back();
      const node_list fields = members_of(*input);
      put_all(bag, fields, {"name", "value", "type", "id", "readonly", "context", "form_context"});
      put(bag, u"cf-schema", fields, "dbSchema");
      put(bag, u"cf-value", fields, "dbvalue");
    }
  }
}

// The message that an envelope completes, or nothing.
std::string plainly_joined(const std::string& frame, open_messages& open) {
  const tree envelope(frame);
  const std::string id = string_of(envelope.members, "id");
  const auto is_final = [](const json_node* m) {
    return m->name != nullptr && m->name == std::string_view("fragment") &&
           m->kind == kind_string && m->value.string == std::string_view("final");
  };
  const bool closing = std::any_of(envelope.members.begin(), envelope.members.end(), is_final);
  if (id.empty() || (!closing && integer_of(envelope.members, "fragment", -1) == -1)) return {};
  open[id] += string_of(envelope.members, "msg");
  return closing ? plainly_decoded(open.extract(id).mapped()).c_str() : "";
}

}  // namespace

texts plainly_read(std::string_view stream, open_messages& open, std::int32_t& result) {
  texts messages;
  std::uint32_t length = 0;
  for (result = read_end; stream.size() >= sizeof length;) {
    std::memcpy(&length, stream.data(), sizeof length);
    if (length > 8191) return result = read_too_long, messages;
    stream.remove_prefix(sizeof length);
    const std::string frame(stream.substr(0, length));
    stream.remove_prefix(frame.size());
    const std::string message = plainly_joined(frame.c_str(), open);
    if (!message.empty()) messages.push_back(message);
  }
  return messages;
}

std::string picture_of(iCfMsg& message) {
  memory_sink sink;
  return message.write(sink.stream) ? sink.bytes : wide_bytes(message.name().text());
}

std::string plainly_dispatched(std::string request, const platform::screen_point* cursor) {
  const tree all(std::move(request));
  const std::string method = string_of(all.members, "method");
  const json_node* data = nullptr;
  for (const json_node* m : all.members) {
    if (m->name != nullptr && m->name == std::string_view("data")) data = m;
  }
  const CfWndPos place = cursor == nullptr ? CfWndPos(3, 0, 0) : CfWndPos(3, cursor->x, cursor->y);

  CfMsgGetSettings get_settings;
  CfMsgCfDbCmd lock;
  CfMsgUnLockDb unlock;
  unlock.pos = place;
  CfMsgRunConsole open(1), configure(3), settings(5);
  const std::pair<const char*, iCfMsg*> bare[] = {
      {"open-coffer", &open},           {"open-settings", &settings},
      {"configure-coffer", &configure}, {"get-settings", &get_settings},
      {"lock-coffer", &lock},           {"unlock-coffer", &unlock}};
  for (const auto& [name, message] : bare) {
    if (method == name) return picture_of(*message);
  }

  const bool drop_down = method == "drop-down";
  if (!drop_down && method != "get-info-for-page" && method != "save-info-from-page") return {};
  if (data == nullptr) return {};
  CfMsgWebsite page;
  if (data->kind == kind_object && data->first_child != nullptr) {
    put_page(page, *data);
  } else if (!drop_down || data->kind != kind_null) {
    return {};
  }
  if (drop_down) page.props.put(u"user-state", u"drop-down");
  if (drop_down && cursor != nullptr) page.pos = place;
  return picture_of(page);
}
