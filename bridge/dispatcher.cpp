#include "bridge/dispatcher.h"

#include <string_view>

#include "bridge/methods.h"
#include "host/diagnostics/diagnostics.h"
#include "json/member_name.h"
#include "json/parser.h"

namespace {

// The two members of a request that are used; null if there was no usable one.
struct request {
  const char* method = nullptr;
  const json_node* data = nullptr;
};

// The last "method" that is a string and the last "data" of any kind.
request read_request(const json_node& root) {
  request r;
  for (const json_node& child : children_of(root)) {
    if (is_named(child, "method") && child.kind == kind_string) r.method = child.value.string;
    if (is_named(child, "data")) r.data = &child;
  }
  return r;
}

const method* find_method(std::string_view name) {
  for (const method& m : methods()) {
    if (m.name == name) return &m;
  }
  return nullptr;
}

}  // namespace

std::int32_t dispatch_method(std::string& text) {
  const json_document parsed(text.data(), text.size());
  if (!dump_off) {
    log_line("json_parse: root=%p errorPos=%s errorDesc=%s\r\n",
             static_cast<const void*>(parsed.root()), text_or_na(parsed.error_position()),
             text_or_na(parsed.error_text()));
  }
  if (parsed.root() == nullptr) return 1;

  const request r = read_request(*parsed.root());
  if (r.method == nullptr || *r.method == '\0') {
    if (!dump_off) log_line("Malformed message received (no method):%s", text.c_str());
    return 1;
  }
  const method* const wanted = find_method(r.method);
  if (wanted != nullptr && !wanted->handle(r.data)) {
    if (!dump_off) log_line("Malformed message received (bad data):%s", text.c_str());
    return 1;
  }
  return 0;
}
