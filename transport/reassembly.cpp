#include "transport/reassembly.h"

#include <memory>
#include <new>
#include <string_view>

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

struct envelope {
  std::string id;
  std::string msg;
  std::int32_t number = no_number;
  bool closing = false;

  bool usable() const { return !id.empty() && (number != no_number || closing); }
};

// A member of another kind than its key demands counts as absent; of several, the last one counts.
void take_member(const json_node& child, envelope& e) {
  const std::string_view name = child.name;
  if (name == "id" && child.kind == kind_string) {
    if (!dump_off) log_line("id=%s\r\n", child.value.string);
    e.id = child.value.string;
  } else if (name == "fragment" && child.kind == kind_string) {
    if (!dump_off) log_line("fragment=%s\r\n", child.value.string);
    if (std::string_view(child.value.string) == "final") e.closing = true;
  } else if (name == "fragment" && child.kind == kind_int) {
    if (!dump_off) log_line("fragment=%d\r\n", child.value.integer);
    e.number = child.value.integer;
  } else if (name == "msg" && child.kind == kind_string) {
    if (!dump_off) log_line("msg=%s\r\n", child.value.string);
    e.msg = child.value.string;
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
    log_line("Bad fragment received: id:%s, fragnum:%d, final:%s", e.id.c_str(), e.number,
             e.closing ? "true" : "false");
  }
  return 1;
}

std::int32_t decode_message(const std::string& gathered, std::string& text) {
  // Zeroed and one longer than the text, so that the result is terminated.
  std::int32_t length = static_cast<std::int32_t>(gathered.size()) + 1;
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[static_cast<std::size_t>(length)]());
  if (buffer == nullptr) {
    if (!dump_off) {
      log_line("can't alloc base64 decode buffer length=%d. Exiting...", length);
    }
    return 1;
  }
  if (base64_decode(gathered.data(), buffer.get(), &length, gathered.data() + gathered.size()) !=
      0) {
    if (!dump_off) {
      log_line("coudln't decode base64 data[%s]. skipping...", gathered.c_str());
    }
    return 1;
  }
  text = buffer.get();
  return 0;
}

}  // namespace

std::int32_t reassemble_fragment(char* frame, std::string& text) {
  // Made at the first frame, so that it is the last of the process-wide objects to come and the
  // first to go.
  static process_store store;

  const envelope e = read_envelope(frame);
  if (!e.usable() || !store.append(e.id, e.msg)) return refuse(e);
  return e.closing ? decode_message(store.take(e.id), text) : 0;
}

std::size_t gathered_text() { return live_store != nullptr ? live_store->text_size() : 0; }
