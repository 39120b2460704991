// Follows what the agent sends up to the frames that the extension gets, through the real observer
// and reply writer.

#include <algorithm>
#include <cstdio>
#include <thread>

#include "bridge/agent_observer.h"
#include "messages/commands.h"
#include "messages/website.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/asked_object.h"
#include "tests/support/fake_platform.h"
#include "tests/support/payload.h"
#include "tests/support/replies.h"
#include "tools/setup/lenient_json.h"
#include "transport/codecs/text.h"

namespace {

// Standard output, into memory, as far as there is room.
std::string output;
std::size_t room;

ssize_t write_output(void*, const char* bytes, std::size_t size) {
  const std::size_t taken = std::min(size, room - output.size());
  output.append(bytes, taken);
  return static_cast<ssize_t>(taken);
}

using texts = std::vector<std::string>;

// The notifications that went out, each of them whole while there was room.
texts sent_notifications() {
  std::string complaint;
  texts all;
  for (const received_reply& reply : replies_in(output, complaint)) {
    require(reply.text.starts_with("{\"") && !to_strict_json(reply.text, firefox_json).fault,
            "a notification is JSON");
    all.push_back(reply.text);
  }
  require(output.size() == room || complaint.empty(), "all frames are whole");
  std::sort(all.begin(), all.end());
  return all;
}

std::string literal(wide_view text) {
  const auto needs_escape = [](char c) { return (c >= 0 && c < 32) || c == '"' || c == '\\'; };
  std::string narrow, out;
  require(text.empty() || wide_to_utf8(narrow, text), "anything is narrowed");
  const bool escaped = std::any_of(narrow.begin(), narrow.end(), needs_escape);
  for (const char c : narrow) {
    const std::size_t index = std::string_view("\b\t\n\f\r\"\\/").find(c);
    if (escaped && index != std::string_view::npos) {
      out.append("\\").push_back("btnfr\"\\/"[index]);
    } else if (needs_escape(c)) {
      out.append(c < 16 ? "\\u000" : "\\u001").push_back("0123456789ABCDEF"[c % 16]);
    } else {
      out += c;
    }
  }
  return '"' + out + '"';
}

std::string pair(wide_view name, wide_view value) { return literal(name) + ':' + literal(value); }

std::string plainly_rendered(const CfMsgWebsite& page) {
  constexpr wide_view fields[][2] = {{u"name", u"name"},
                                     {u"value", u"value"},
                                     {u"type", u"type"},
                                     {u"id", u"id"},
                                     {u"readonly", u"readonly"},
                                     {u"context", u"context"},
                                     {u"form_context", u"form-context"},
                                     {u"dbSchema", u"cf-schema"},
                                     {u"dbvalue", u"cf-value"}};
  std::string text = pair(u"sender", page.sender);
  for (const text_map::pair& p : page.props.map()) {
    text += ',' + pair(p.key_text(), p.value_text());
  }
  std::string inputs;
  for (const propsW_t& bag : page.inputs) {
    std::string input;
    for (const auto& [name, key] : fields) input += ',' + pair(name, bag.get(key.data(), u""));
    inputs += ",{" + input.substr(1) + '}';
  }
  return text + ",\"inputs\":[" + inputs.substr(inputs.empty() ? 0 : 1) + "],\"dbItems\":[]";
}

std::string plainly_rendered(const CfSettings& settings) {
  std::string text;
  for (const text_map::pair& p : settings.map()) text += ',' + pair(p.key_text(), p.value_text());
  return '{' + text.substr(text.empty() ? 0 : 1) + '}';
}

std::string plainly_rendered(const coffer_data_record& data) {
  return "{\"coffer-init-data\":{\"fUpdate\":" + std::to_string(data.fUpdate) +
         ",\"flags\":" + std::to_string(data.flags) + ",\"agPid\":" + std::to_string(data.agPid) +
         ",\"agStatus\":" + std::to_string(data.agStatus) +
         ",\"dbStatus\":" + std::to_string(data.dbStatus) +
         ",\"settings\":" + plainly_rendered(data.settings) +
         ",\"default_settings\":" + plainly_rendered(data.default_settings) + "}}";
}

// What a payload of this type becomes: the notification's name and members.
std::string plainly_notified(const std::string& payload) {
  odd_stream form(payload);
  wide_string type;
  odd_stream(payload).readWide(type);
  CfMsgWebsite page;
  CfMsgOpenUrl link;
  const char* name = nullptr;
  if (type == u"msg::CfMsgOpenUrl") {
    if (!link.read(form)) return {};
    return "{\"coffer-open-url\":{" + pair(u"url", link.url) + ',' + pair(u"uuid", link.uuid) +
           "}}";
  }
  if (type == u"msg::CfMsgWebsite") name = "coffer_info_update";
  if (type == u"msg::CfMsgWebsiteRsp") name = "page_input_update";
  if (type == u"msg::CfMsgWebsiteNavigate") name = "navigate_login";
  if (name == nullptr) return {};
  if (type != u"msg::CfMsgWebsite") (void)form.readWide();
  if (!page.read(form)) return {};
  return std::string("{\"") + name + "\":{" + plainly_rendered(page) + "}}";
}

}  // namespace

// The first byte of the input chooses the type string that is put in front of the payload, by bits
// what else there is, and with the second one how much.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::FILE* const stream =
      fopencookie(nullptr, "w", {nullptr, write_output, nullptr, nullptr});
  std::string_view input = text_of(data, size);
  const std::uint8_t choice = take_byte(input);
  const std::uint8_t amount = (choice & 0x38) != 0 ? take_byte(input) : 0;
  std::string payload = unrolled(input);
  coffer_data_record state;
  set_values_record values;
  odd_stream fields(payload);
  fields.readU32(values.has_settings).readU32(state.fUpdate).readU32(state.flags);
  fields.readU32(state.agPid).readU32(state.agStatus).readU32(state.dbStatus);
  for (CfSettings* s : {&values.settings, &state.settings, &state.default_settings}) {
    propsW_t bag;
    readBag(fields, bag);
    for (const text_map::pair& p : bag.map()) s->set(p.key, p.value);
  }
  if (choice % 4 > 1) payload.insert(0, wide_bytes(u"msg::CfMsgWebsite"));
  if (choice % 4 == 3) payload.insert(0, wide_bytes(u"msg::CfMsgWebsiteRsp"));
  auto length = static_cast<std::int32_t>(payload.size());
  // Cut short, or none.
  if ((choice & 8) != 0) length = amount < length ? length - amount : -amount;
  packet carried(payload, length);
  asked_object object;
  object.records = carried.records();
  if ((choice & 4) != 0) {
    object.records.emplace_back(coffer_data_record::type_name, &state);
    object.records.emplace_back(set_values_record::type_name, &values);
  }
  stdout = stream;
  output.clear();
  room = (choice & 16) != 0 ? std::size_t{8} * amount : SIZE_MAX;
  fake::reset(choice >= 128);
  const auto notify = [&object] {
    require(agentObserver.notify(&object) == 0, "it always says 0");
  };
  const bool twice = (choice & 0xA0) == 0x20;
  std::thread other;
  if (twice) other = std::thread(notify);
  notify();
  if (twice) other.join();
  require(object.references == (twice ? 2 : 1), "each call takes one reference");

  texts expected = {
      plainly_notified(payload.substr(0, static_cast<std::size_t>(std::max(length, 0))))};
  if ((choice & 4) != 0) {
    expected.push_back(plainly_rendered(state));
    if (values.has_settings != 0)
      expected.push_back("{\"coffer-set-settings\":" + plainly_rendered(values.settings) + '}');
  }
  if (expected[0].empty()) expected.erase(expected.begin());
  const texts once = expected;
  if (twice) expected.insert(expected.end(), once.begin(), once.end());
  std::sort(expected.begin(), expected.end());
  const texts sent = sent_notifications();
  require(output.size() == room
              ? std::includes(expected.begin(), expected.end(), sent.begin(), sent.end())
              : sent == expected,
          "what is whole becomes its notification");
  return 0;
}
