#include "transport/reassembly.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "host/diagnostics/diagnostics.h"
#include "json/member_name.h"
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
  if (is_named(child, "id") && child.kind == kind_string) {
    if (!dump_off) log_line("id=%s\r\n", child.value.string);
    e.id = text_of(child);
  } else if (is_named(child, "fragment") && child.kind == kind_string) {
    if (!dump_off) log_line("fragment=%s\r\n", child.value.string);
    if (text_of(child) == "final") e.closing = true;
  } else if (is_named(child, "fragment") && child.kind == kind_int) {
    if (!dump_off) log_line("fragment=%d\r\n", child.value.integer);
    e.number = child.value.integer;
  } else if (is_named(child, "msg") && child.kind == kind_string) {
    if (!dump_off) log_line("msg=%s\r\n", child.value.string);
    e.msg = text_of(child);
  }
}

inbound_envelope read_inbound_envelope(char* frame, std::size_t size) {
  const json_document parsed(frame, size);
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

// Decodes a text where it lies, up to the first NUL of the decoded text, and gives the size. The
// decoder refuses nothing but a lack of room, and there is room for more than comes out.
std::size_t decode_message(char* text, std::size_t size) {
  auto length = static_cast<std::int32_t>(size);
  base64_decode(text, text, &length, text + size);
  const std::string_view decoded(text, static_cast<std::size_t>(length));
  return std::min(decoded.find('\0'), decoded.size());
}

}  // namespace

// Made when input is first awaited, so that it is the last of the process-wide objects to be made
// and the first to go.
fragment_store& process_store() {
  static fragment_store store;
  return store;
}

std::int32_t reassemble_fragment(char* frame, std::string& text, fragment_store& store) {
  return reassemble_fragment(frame, std::strlen(frame), text, store);
}

std::int32_t reassemble_fragment(char* frame, std::size_t size, std::string& text,
                                 fragment_store& store) {
  const inbound_envelope e = read_inbound_envelope(frame, size);
  if (!e.usable()) return refuse(e);
  const std::string id(e.id);
  // Most messages come in one piece, which needs no place in the store.
  if (e.closing && !store.contains(id)) {
    char* const msg = frame + (e.msg.empty() ? 0 : e.msg.data() - frame);
    text.assign(msg, decode_message(msg, e.msg.size()));
    return 0;
  }
  const bool kept = store.append(id, e.msg);
  if (!e.closing) return kept ? 0 : refuse(e);

  std::optional<std::string> gathered = store.take(id);
  if (!gathered) return refuse(e);
  text = std::move(*gathered);
  const std::size_t decoded = decode_message(text.data(), text.size());
  text.resize(decoded);
  return 0;
}
