#include "transport/reassembly.h"

#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "host/diagnostics/diagnostics.h"
#include "json/parser.h"
#include "transport/codecs/base64.h"
#include "transport/fragment_store.h"

namespace {

constexpr std::int32_t no_number = -1;

// The texts point into the frame.
struct inbound_envelope {
  std::string_view id;
  std::string_view msg;
  std::int32_t number = no_number;
  bool closing = false;

  bool usable() const { return !id.empty() && (number != no_number || closing); }
};

// A member of the wrong kind for its key counts as absent; of several, the last one counts.
void take_member(const json_node& child, inbound_envelope& e) {
  const std::string_view name = child.name;
  if (name == "id" && child.kind == kind_string) {
    if (!dump_off) log_line("id=%s\r\n", child.value.string);
    e.id = text_of(child);
  } else if (name == "fragment" && child.kind == kind_string) {
    if (!dump_off) log_line("fragment=%s\r\n", child.value.string);
    if (text_of(child) == "final") e.closing = true;
  } else if (name == "fragment" && child.kind == kind_int) {
    if (!dump_off) log_line("fragment=%d\r\n", child.value.integer);
    e.number = child.value.integer;
  } else if (name == "msg" && child.kind == kind_string) {
    if (!dump_off) log_line("msg=%s\r\n", child.value.string);
    e.msg = text_of(child);
  }
}

inbound_envelope read_inbound_envelope(char* frame) {
  const json_document parsed(frame);
  if (!dump_off) {
    log_line("json_parse reconstruct: root=%p errorPos=%s errorDesc=%s\r\n",
             static_cast<const void*>(parsed.root()), text_or_na(parsed.error_position()),
             text_or_na(parsed.error_text()));
  }
  inbound_envelope e;
  if (parsed.root() == nullptr) return e;
  for (const json_node& child : children_of(*parsed.root())) {
    if (child.name == nullptr) continue;
    if (!dump_off) log_line("child->name=%s\r\n", child.name);
    take_member(child, e);
  }
  return e;
}

std::int32_t refuse(const inbound_envelope& e) {
  if (!dump_off) {
    log_line("Bad fragment received: id:%s, fragnum:%d, final:%s", std::string(e.id).c_str(),
             e.number, e.closing ? "true" : "false");
  }
  return 1;
}

// Decodes `gathered` in place, up to the first NUL of the decoded text. The decoder fails only for
// lack of room, and the decoded text is never longer.
void decode_message(std::string& gathered) {
  auto length = static_cast<std::int32_t>(gathered.size());
  char* const text = gathered.data();
  base64_decode(text, text, &length, text + gathered.size());
  gathered.resize(static_cast<std::size_t>(length));
  gathered.resize(std::strlen(gathered.c_str()));
}

}  // namespace

// Made when input is first awaited, so that it is the last of the process-wide objects to be made
// and the first to go.
fragment_store& process_store() {
  static fragment_store store;
  return store;
}

std::int32_t reassemble_fragment(char* frame, std::string& text, fragment_store& store) {
  const inbound_envelope e = read_inbound_envelope(frame);
  if (!e.usable()) return refuse(e);
  const std::string id(e.id);
  // Most messages come in one piece, which needs no place in the store.
  const bool whole = e.closing && !store.contains(id);
  const bool kept = whole || store.append(id, e.msg);
  if (!e.closing) return kept ? 0 : refuse(e);

  std::optional<std::string> gathered = whole ? std::string(e.msg) : store.take(id);
  if (!gathered) return refuse(e);
  decode_message(*gathered);
  text = std::move(*gathered);
  return 0;
}
