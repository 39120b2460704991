// A host that one could build from libraries in a day: requests in, binary messages out, which it
// drops. It does what cfhost does between its input and `post`, for pages only.

#include <rapidjson/document.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "bench/peers/good_base64.h"
#include "bench/peers/plain_codecs.h"

namespace {

using rapidjson::Value;
using form = std::u16string;

constexpr std::uint32_t largest_envelope = 8191;
constexpr std::uint32_t guard = 0xA5A5A5A5;

struct key_pair {
  std::string_view json;
  std::u16string_view wire;
  bool is_optional = false;
};

// In the order of the wire form.
constexpr std::array<key_pair, 14> page_keys = {{{"after_url", u"after-url"},
                                                 {"before_url", u"before-url"},
                                                 {"click_source", u"click-source"},
                                                 {"context", u"context"},
                                                 {"document_state", u"document-state"},
                                                 {"fHasMultipleForms", u"has-multiple-forms", true},
                                                 {"navigate_login", u"navigate-login", true},
                                                 {"fIsPartiallyFilled", u"partially-filled", true},
                                                 {"source", u"source"},
                                                 {"source_context", u"source-context"},
                                                 {"source_event", u"source-event"},
                                                 {"submit_source", u"submit-source"},
                                                 {"title", u"title"},
                                                 {"user_state", u"user-state"}}};
constexpr std::array<key_pair, 9> input_keys = {{{"dbSchema", u"cf-schema"},
                                                 {"dbvalue", u"cf-value"},
                                                 {"context", u"context"},
                                                 {"form_context", u"form-context"},
                                                 {"id", u"id"},
                                                 {"name", u"name"},
                                                 {"readonly", u"readonly"},
                                                 {"type", u"type"},
                                                 {"value", u"value"}}};

std::string_view text_of(const Value& value) {
  if (value.IsInt()) return value.GetInt() != 0 ? "1" : "";
  return value.IsString() ? std::string_view(value.GetString(), value.GetStringLength()) : "";
}

void put(form& out, std::uint32_t number) {
  out += static_cast<char16_t>(number);
  out += static_cast<char16_t>(number >> 16);
}

void put(form& out, std::u16string_view text) { out.append(text).append(1, u'\0'); }

void put_utf8(form& out, std::string_view text) {
  const std::size_t before = out.size();
  out.resize(before + text.size());
  const std::size_t count = plain_utf8_to_utf16(text.data(), text.size(), out.data() + before);
  out.resize(before + count);
  out += u'\0';
}

template <std::size_t Count>
void put_bag(form& out, const Value& object, const std::array<key_pair, Count>& keys) {
  std::array<std::string_view, Count> found{};
  for (const auto& member : object.GetObject()) {
    const std::string_view name = text_of(member.name);
    for (std::size_t i = 0; i < Count; ++i) {
      if (keys[i].json == name) found[i] = text_of(member.value);
    }
  }
  for (std::size_t i = 0; i < Count; ++i) {
    if (keys[i].is_optional && found[i].empty()) continue;
    put(out, keys[i].wire);
    put_utf8(out, found[i]);
  }
  out += u'\0';
}

void build(const Value& data, form& out) {
  put(out, u"msg::CfMsgWebsite");
  put(out, 0);
  const auto sender = data.FindMember("sender");
  put_utf8(out, sender == data.MemberEnd() ? "" : text_of(sender->value));
  put(out, u"");
  put(out, guard);
  put_bag(out, data, page_keys);
  put(out, guard);
  const auto inputs = data.FindMember("inputs");
  const bool has_inputs = inputs != data.MemberEnd() && inputs->value.IsArray();
  put(out, has_inputs ? inputs->value.Size() : 0);
  if (has_inputs) {
    for (const Value& input : inputs->value.GetArray()) put_bag(out, input, input_keys);
  }
  put(out, guard);
  for (int i = 0; i < 3; ++i) put(out, 0);
}

// Returns the length of what was built; the compiler would drop a result that nobody uses.
std::size_t work_on(std::string text) {
  text.resize(table_base64_decode(text.data(), text.size()));
  rapidjson::Document request;
  request.ParseInsitu(text.data());
  if (request.HasParseError() || !request.IsObject()) return 0;
  const auto data = request.FindMember("data");
  if (data == request.MemberEnd() || !data->value.IsObject()) return 0;
  static form message;
  message.clear();
  build(data->value, message);
  return message.size();
}

bool read_frame(std::vector<char>& frame) {
  std::uint32_t length = 0;
  if (std::fread(&length, sizeof length, 1, stdin) != 1 || length > largest_envelope) return false;
  frame.resize(length + 1);
  frame[length] = '\0';
  return std::fread(frame.data(), 1, length, stdin) == length;
}

}  // namespace

int main() {
  std::setvbuf(stdin, nullptr, _IOFBF, 64 * 1024);
  std::vector<char> frame;
  std::unordered_map<std::string, std::string> unfinished;
  std::size_t built = 0;
  while (read_frame(frame)) {
    rapidjson::Document envelope;
    envelope.ParseInsitu(frame.data());
    if (envelope.HasParseError() || !envelope.IsObject()) continue;
    const Value& id = envelope["id"];
    const Value& piece = envelope["msg"];
    std::string& gathered = unfinished[std::string(text_of(id))];
    gathered.append(text_of(piece));
    if (!envelope["fragment"].IsString()) continue;
    built += work_on(std::move(gathered));
    unfinished.erase(std::string(text_of(id)));
  }
  std::printf("%zu\n", built * sizeof(char16_t));
}
