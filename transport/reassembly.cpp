#include "transport/reassembly.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "host/diagnostics.h"
#include "json/parser.h"
#include "transport/base64.h"
#include "transport/fragment_store.h"

namespace {

constexpr std::int32_t no_number = -1;

const fragment_store* live_store = nullptr;

// The one store of the process, which is known while it lives.
struct process_store : fragment_store {
  process_store() { live_store = this; }
  ~process_store() { live_store = nullptr; }
  process_store(const process_store&) = delete;
  process_store& operator=(const process_store&) = delete;
};

// The texts lie in the frame.
struct envelope {
  std::string_view id;
  std::string_view msg;
  std::int32_t number = no_number;
  bool closing = false;

  bool usable() const { return !id.empty() && (number != no_number || closing); }
};

// A member of another kind than its key demands counts as absent; of several, the last one counts.
void take_member(const json_node& child, envelope& e) {
  const std::string_view name = child.name;
  if (name == "id" && child.kind == kind_string) {
    if (!dump_off) log_line("id=%s\r\n", child.value.string);
    e.id = {child.value.string, child.text_length};
  } else if (name == "fragment" && child.kind == kind_string) {
    if (!dump_off) log_line("fragment=%s\r\n", child.value.string);
    if (std::string_view(child.value.string, child.text_length) == "final") e.closing = true;
  } else if (name == "fragment" && child.kind == kind_int) {
    if (!dump_off) log_line("fragment=%d\r\n", child.value.integer);
    e.number = child.value.integer;
  } else if (name == "msg" && child.kind == kind_string) {
    if (!dump_off) log_line("msg=%s\r\n", child.value.string);
    e.msg = {child.value.string, child.text_length};
  }
}

envelope read_envelope(char* frame) {
  const char* errorPos = nullptr;
  const char* errorDesc = nullptr;
  scoped_node_arena arena;
  const json_node* const root = json_parse(frame, errorPos, errorDesc, arena);
  if (!dump_off) {
    log_line("json_parse reconstruct: root=%p errorPos=%s errorDesc=%s\r\n",
             static_cast<const void*>(root), text_or_na(errorPos), text_or_na(errorDesc));
  }
  envelope e;
  if (root == nullptr) return e;
  for (const json_node* child = root->first_child; child != nullptr; child = child->next_sibling) {
    if (child->name == nullptr) continue;
    if (!dump_off) log_line("child->name=%s\r\n", child->name);
    take_member(*child, e);
  }
  return e;
}

std::int32_t refuse(const envelope& e) {
  if (!dump_off) {
    log_line("Bad fragment received: id:%s, fragnum:%d, final:%s", std::string(e.id).c_str(),
             e.number, e.closing ? "true" : "false");
  }
  return 1;
}

// Decodes `gathered` where it lies, up to the first NUL of the decoded text.
std::int32_t decode_message(std::string& gathered) {
  auto length = static_cast<std::int32_t>(gathered.size());
  char* const text = gathered.data();
  if (base64_decode(text, text, &length, text + gathered.size()) != 0) {
    if (!dump_off) {
      log_line("coudln't decode base64 data[%s]. skipping...", gathered.c_str());
    }
    return 1;
  }
  gathered.resize(static_cast<std::size_t>(length));
  gathered.resize(std::strlen(gathered.c_str()));
  return 0;
}

}  // namespace

std::int32_t reassemble_fragment(char* frame, std::string& text) {
  // Made at the first frame, so that it is the last of the process-wide objects to come and the
  // first to go.
  static process_store store;

  const envelope e = read_envelope(frame);
  if (!e.usable()) return refuse(e);
  const std::string id(e.id);
  // Most messages come in one piece, which needs no place in the store.
  const bool whole = e.closing && !store.contains(id);
  if (!whole && !store.append(id, e.msg)) return refuse(e);
  if (!e.closing) return 0;

  std::string gathered = whole ? std::string(e.msg) : store.take(id);
  if (decode_message(gathered) != 0) return 1;
  text = std::move(gathered);
  return 0;
}

std::size_t gathered_text() { return live_store != nullptr ? live_store->text_size() : 0; }
