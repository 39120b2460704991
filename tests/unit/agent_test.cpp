#include <cstdlib>
#include <map>
#include <thread>

#include "bridge/agent_observer.h"
#include "bridge/rendering.h"
#include "host/exit_actions.h"
#include "messages/client_library.h"
#include "tests/unit/support.h"
#include "transport/reassembly.h"
#include "transport/stdout_lock.h"

namespace {

// Records as the library lays them out.
struct npc_object {
  char head[24];
  const void* packet;
};
struct coffer_data_object {
  char head[32];
  std::int32_t fUpdate = 1, flags = 0, agPid = 4242, agStatus = 2;
  CfSettings settings, default_settings;
  std::int32_t dbStatus = -1;
};
struct set_values_object {
  char head[16];
  std::uint32_t has_settings = 1;
  CfSettings settings;
};

// Answers with records, stays inside `query` while it is held, and counts what is asked of it.
struct received_object final : iCfMsg {
  std::int32_t release() override { return ++calls; }
  std::int32_t addRef() override { return ++references; }
  void* query(const cfName& n) override {
    for (++calls; hold;) std::this_thread::yield();
    return records[shown(n.text())];
  }
  std::map<std::string, void*> records;
  std::atomic<int> references = 0, calls = 0;
  std::atomic<bool> hold = false;
};

// The texts that `notify` sends for an object.
std::string sent_for(std::map<std::string, void*> records) {
  received_object object;
  object.records = std::move(records);
  testing::internal::CaptureStdout();
  EXPECT_EQ(agentObserver.notify(&object), 0);
  std::string all;
  for (const auto& reply : replies_in(testing::internal::GetCapturedStdout())) all += reply.text();
  EXPECT_TRUE(object.references == 1 && object.calls == 3) << "one reference taken, none dropped";
  return all;
}

// The packet starts at an odd address and ends where its memory ends.
std::string sent_for(const std::string& payload, std::size_t length) {
  const odd_payload packet(std::string(84, 'x') + word(static_cast<std::uint32_t>(length)) +
                           payload);
  npc_object npc{{}, packet.memory.get() + 1};
  return sent_for({{"msg::CfMsgNpc", &npc}});
}

std::string website_form() {
  CfMsgWebsite site;
  site.sender = u"tab-12";
  site.props.set(u"source", u"page-url", true);
  site.inputs.resize(1);
  const wide_char* const fields[] = {u"name", u"email", u"value", u"ann",
                                     u"type", u"text",  u"id",    u"e1"};
  for (int i = 0; i < 8; i += 2) site.inputs[0].set(fields[i], fields[i + 1], true);
  return form_of(site);
}

std::string open_url_form(wide_view uuid, wide_view url) {
  return wide_bytes(u"msg::CfMsgOpenUrl") + wide_bytes(uuid) + wide_bytes(url);
}

using AgentObserver = quiet_test;
using AgentObserverLog = logged_test;

TEST_F(AgentObserver, SendsWhatAPacketCarries) {
  const std::string form = website_form();
  const std::string body =
      R"({"sender":"tab-12","source":"page-url","inputs":[{"name":"email","value":"ann",)"
      R"("type":"text","id":"e1","readonly":"","context":"","form_context":"",)"
      R"("dbSchema":"","dbvalue":""}],"dbItems":[]}})";
  const std::pair<std::string, std::string> payloads[] = {
      {form + "behind", R"({"coffer_info_update":)" + body},
      {wide_bytes(u"msg::CfMsgWebsiteRsp") + form, R"({"page_input_update":)" + body},
      {wide_bytes(u"msg::CfMsgWebsiteNavigate") + form, R"({"navigate_login":)" + body},
      {open_url_form(u"a1b2", u"pages/sign-in"),
       R"({"coffer-open-url":{"url":"pages/sign-in","uuid":"a1b2"}})"},
      {open_url_form(u"", u"a/\""), R"({"coffer-open-url":{"url":"a\/\"","uuid":""}})"}};
  for (const auto& [payload, text] : payloads) EXPECT_EQ(sent_for(payload, payload.size()), text);
}

TEST_F(AgentObserver, SendsNothingForWhatItCannotRead) {
  const std::string response = wide_bytes(u"msg::CfMsgWebsiteRsp"), form = website_form();
  for (std::size_t size = 0; size < form.size(); ++size) {
    EXPECT_EQ(sent_for(form.substr(0, size), size), "") << size;
    EXPECT_EQ(sent_for(response + form.substr(0, size), response.size() + size), "") << size;
  }
  for (const std::string& payload :
       {wide_bytes(u"msg::CfMsgWebsiteX") + form, wide_bytes(u"msg::CfMsgWeb"), form.substr(1),
        wide_bytes(u"MSG::CFMSGWEBSITE") + form.substr(36), wide_bytes(u"msg::CfMsgGetSettings"),
        response + response + form.substr(36)}) {
    EXPECT_EQ(sent_for(payload, payload.size()), "");
  }
  for (const std::size_t length : {~0U, 0x80000000U}) EXPECT_EQ(sent_for(form, length), "");
  npc_object without_packet{{}, nullptr};
  EXPECT_EQ(sent_for({{"msg::CfMsgNpc", &without_packet}}), "");
}

TEST_F(AgentObserverLog, ActsOnEveryNameThatAnObjectAnswers) {
  const odd_payload packet(std::string(84, 'x') + word(42) + open_url_form(u"", u"x"));
  npc_object npc{{}, packet.memory.get() + 1};
  coffer_data_object data;
  set_values_object values, none;
  none.has_settings = 0;
  data.settings.set(u"pwdman.enabled", u"true");
  data.default_settings.set(u"pwdman.enabled", u"false");
  EXPECT_EQ(
      sent_for({{"msg::CfMsgNpc", &npc},
                {"msg::CfMsgCofferData", &data},
                {"msg::CfMsgSetValues", &values}}),
      R"({"coffer-open-url":{"url":"x","uuid":""}})"
      R"({"coffer-init-data":{"fUpdate":1,"flags":0,"agPid":4242,"agStatus":2,"dbStatus":-1,)"
      R"("settings":{"pwdman.enabled":"true"},"default_settings":{"pwdman.enabled":"false"}}})"
      R"({"coffer-set-settings":{}})");
  const wide_char* const pairs[] = {u"pwdman.enabled", u"true", u"pwdman.autofillMode", u"2"};
  for (int i = 0; i < 4; i += 2) values.settings.set(pairs[i], pairs[i + 1]);
  EXPECT_EQ(sent_for({{"msg::CfMsgSetValues", &values}}),
            R"({"coffer-set-settings":{"pwdman.autofillMode":"2","pwdman.enabled":"true"}})");
  EXPECT_EQ(sent_for({{"msg::CfMsgSetValues", &none}}) + sent_for({}), "");
  const auto& lines = fake::system().lines;
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "[ 812] [ cf    ] Test"), 4);
}

struct ClientLibrary : quiet_test {
  ~ClientLibrary() override { unload_client_library(); }
};

cfApi* no_root() { return nullptr; }

TEST_F(ClientLibrary, IsLoadedOnceIfItHasItsEntry) {
  EXPECT_FALSE(load_client_next_to(platform::own_module()));
  EXPECT_EQ(fake::system().loaded_path, u"/own/cfagent");
  EXPECT_EQ(fake::system().unloaded, 0);
  fake::system().library = &fake::system();
  EXPECT_FALSE(load_client_library(u"without entry"));
  EXPECT_EQ(fake::system().unloaded, 1);
  EXPECT_TRUE(client_library.module == nullptr && client_library.path == u"without entry");
  fake::system().entry = reinterpret_cast<void*>(no_root);
  EXPECT_TRUE(load_client_library(u"first"));
  EXPECT_FALSE(load_client_library(u"second"));
  EXPECT_TRUE(client_library.module == &fake::system() && client_library.path == u"second");
  EXPECT_EQ(fake::system().loaded_path, u"first");
}

void demand(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::_Exit(1);
}

bool is_left_alone() {
  received_object object;
  return agentObserver.notify(&object) == 0 && object.references + object.calls == 0;
}

received_object under_way;

void check_unload() {
  demand(gathered_text() == 0, "the store goes first");
  demand(is_left_alone() && under_way.calls == 3, "then the observer, once nobody is inside");
  demand(client_library.module == nullptr && client_library.api == nullptr, "then the library");
  demand(!stdout_lock.ended(), "and the lock after it");
}

void check_end() {
  demand(fake::system().unloaded == 1 && stdout_lock.ended(), "all are gone");
  std::_Exit(7);
}

[[noreturn]] void exit_with_everything_in_use() {
  std::atexit(check_end);
  register_exit_actions();
  fake::system().library = &fake::system();
  fake::system().entry = reinterpret_cast<void*>(no_root);
  fake::system().on_unload = check_unload;
  demand(load_client_library(u"path"), "loading");
  reassemble(R"({"id":"unfinished","fragment":0,"msg":"QUJD"})");
  demand(gathered_text() == 4 && !is_left_alone(), "everything in use");
  under_way.hold = true;
  std::thread([] { agentObserver.notify(&under_way); }).detach();
  while (under_way.calls == 0) std::this_thread::yield();
  std::thread([] {
    while (!is_left_alone()) std::this_thread::yield();
    under_way.hold = false;
  }).detach();
  std::exit(0);
}

[[noreturn]] void close_with_a_call_inside() {
  received_object object;
  object.hold = true;
  std::thread caller([&object] { agentObserver.notify(&object); });
  while (object.calls == 0) std::this_thread::yield();
  demand(!close_agent_observer(std::chrono::milliseconds(20)), "the wait is bounded");
  demand(is_left_alone(), "nobody comes in any more");
  object.hold = false;
  demand(close_agent_observer(std::chrono::minutes(1)), "who is inside finishes");
  caller.join();
  std::_Exit(7);
}

// Ends are for good, so each happens in a process of its own.
TEST_F(AgentObserver, ClosesItsGateAndTheProcessObjectsGoInTheirOrder) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(close_with_a_call_inside(), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(exit_with_everything_in_use(), testing::ExitedWithCode(7), "");
}

}  // namespace
