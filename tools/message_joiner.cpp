#include "tools/message_joiner.h"

#include <string_view>

#include "json/parser.h"
#include "transport/codecs/base64.h"

namespace {

constexpr std::int32_t no_number = -1;

void take_member(const json_node& member, parsed_envelope& e, bool& has_piece) {
  const std::string_view name = member.name;
  const bool is_text = member.kind == kind_string;
  if (name == "reply") e.from_host = true;
  if (name == "id" && is_text) e.id = member.value.string;
  if (name == "fragment" && member.kind == kind_int) e.number = member.value.integer;
  if (name == "fragment" && is_text) e.last = std::string_view(member.value.string) == "final";
  if ((name == "msg" || name == "data") && is_text) {
    e.piece = member.value.string;
    has_piece = true;
  }
}

std::string decode(const std::string& text) {
  auto length = static_cast<std::int32_t>(text.size());
  std::string decoded(text.size(), '\0');
  (void)base64_decode(text.data(), decoded.data(), &length, text.data() + text.size());
  decoded.resize(static_cast<std::size_t>(length));
  return decoded;
}

}  // namespace

bool parse_envelope(const std::string& text, parsed_envelope& e, std::string& error) {
  e = parsed_envelope{};
  e.number = no_number;
  bool has_piece = false;
  std::string copy = text;
  const char* position = nullptr;
  const char* description = "it is empty";
  scoped_node_arena arena;
  const json_node* const root = json_parse(copy.data(), position, description, arena);
  if (root == nullptr) {
    error = std::string("no envelope: ") + description;
    return false;
  }
  for (const json_node* child = root->first_child; child != nullptr; child = child->next_sibling) {
    if (child->name != nullptr) take_member(*child, e, has_piece);
  }
  if (e.id.empty()) error = "an envelope without \"id\"";
  if (!e.last && e.number < 0) error = "an envelope without a usable \"fragment\"";
  if (!has_piece) error = "an envelope without \"msg\" or \"data\"";
  return has_piece && !e.id.empty() && (e.last || e.number >= 0);
}

join_result message_joiner::add(const parsed_envelope& e, std::string& message,
                                std::string& error) {
  const std::string key = (e.from_host ? '<' : '>') + e.id;
  const bool known = open_.count(key) != 0;
  if (e.piece.size() > max_joined_text - text_size_ ||
      (!known && open_.size() >= max_open_messages)) {
    error = "too much text or too many messages are unfinished";
    return join_result::refused;
  }
  gathered& entry = open_[key];
  if (e.from_host && !e.last && e.number != entry.next_number) {
    error = "fragment " + std::to_string(e.number) + " of \"" + e.id + "\" where " +
            std::to_string(entry.next_number) + " was due";
    return join_result::refused;
  }
  ++entry.next_number;
  entry.text += e.piece;
  text_size_ += e.piece.size();
  if (!e.last) return join_result::stored;
  message = decode(entry.text);
  text_size_ -= entry.text.size();
  open_.erase(key);
  return join_result::complete;
}
