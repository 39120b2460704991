// Follows what the agent sends up to the frames that the extension gets, through the real observer
// and reply writer.

#include <algorithm>
#include <cstdio>

#include "bridge/agent_observer.h"
#include "messages/commands.h"
#include "messages/library/received_object.h"
#include "messages/website.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/fake_platform.h"
#include "tests/support/payload.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "tools/setup/lenient_json.h"
#include "transport/codecs/text.h"
#include "transport/frame_format.h"

namespace {

// Standard output, redirected to memory.
std::string output;

ssize_t write_output(void*, const char* bytes, std::size_t size) {
  output.append(bytes, size);
  return static_cast<ssize_t>(size);
}

using texts = std::vector<std::string>;

// The notifications that were sent; checks that each is whole.
texts sent_notifications() {
  frame_splitter splitter(max_output_size);
  message_joiner joiner;
  splitter.feed(output);
  std::string text, error;
  parsed_envelope e;
  texts all;
  while (const auto frame = splitter.next()) {
    require(parse_envelope(*frame, e, error) && e.from_host, "an envelope can be read");
    const join_result result = joiner.add(e, text, error);
    require(result != join_result::refused, "pieces are numbered");
    if (result != join_result::complete) continue;
    require(text.starts_with("{\"") && !to_strict_json(text, firefox_json).fault,
            "a notification is JSON");
    all.push_back(text);
  }
  require(splitter.complaint().empty() && joiner.unfinished() == 0, "all frames are whole");
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

// The first byte of the input chooses the type string that precedes the payload.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::FILE* const stream =
      fopencookie(nullptr, "w", {nullptr, write_output, nullptr, nullptr});
  std::string_view input = text_of(data, size);
  const std::uint8_t choice = take_byte(input);
  std::string payload(input);
  if (choice % 4 > 1) payload.insert(0, wide_bytes(u"msg::CfMsgWebsite"));
  if (choice % 4 == 3) payload.insert(0, wide_bytes(u"msg::CfMsgWebsiteRsp"));
  stdout = stream;
  output.clear();
  fake::reset(choice >= 128);
  byte_list packet(sizeof(npc_packet));
  packet.insert(packet.end(), payload.begin(), payload.end());
  carried_form object(std::move(packet));
  require(agentObserver.notify(&object) == 0 && object.decRef() == 0, "one reference is taken");

  const std::string expected = plainly_notified(payload);
  require(sent_notifications() == (expected.empty() ? texts{} : texts{expected}),
          "a whole form becomes its notification");
  return 0;
}
