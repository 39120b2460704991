#include "bridge/agent_observer.h"

#include <set>

#include "bridge/notifications.h"
#include "messages/records.h"
#include "tests/unit/asked_object.h"

namespace {

using record_map = std::map<std::string, void*>;

// The texts that `notify` sends for an object.
std::string sent_for(record_map records) {
  asked_object object;
  object.records = std::move(records);
  testing::internal::CaptureStdout();
  EXPECT_EQ(agentObserver.notify(&object), 0);
  std::string all;
  for (const auto& reply : replies_in(testing::internal::GetCapturedStdout())) all += reply.text();
  EXPECT_TRUE(object.references == 1 && object.calls == 3) << "one reference taken, none dropped";
  return all;
}

// A packet, at an odd address, that ends where its memory ends.
struct packet {
  explicit packet(const std::string& payload)
      : bytes(std::string(84, 'x') + word(static_cast<std::uint32_t>(payload.size())) + payload) {
    npc.packet = reinterpret_cast<const npc_packet*>(bytes.memory.get() + 1);
  }
  record_map records() { return {{"msg::CfMsgNpc", &npc}}; }

  odd_payload bytes;
  npc_record npc;
};

using AgentObserver = quiet_test;

// What each notification is made from. The end-to-end tests have their texts.
TEST_F(AgentObserver, SendsEachNotificationOfTheTables) {
  CfMsgWebsite site;
  const std::string form = form_of(site);
  packet page(form + "behind"), response(wide_bytes(u"msg::CfMsgWebsiteRsp") + form),
      navigate(wide_bytes(u"msg::CfMsgWebsiteNavigate") + form),
      link(wide_bytes(u"msg::CfMsgOpenUrl") + wide_bytes(u"a1b2") + wide_bytes(u"a/\""));
  coffer_data_record data;
  set_values_record values;
  values.has_settings = 1;
  const std::map<std::string, record_map> cases = {
      {"coffer_info_update", page.records()},
      {"page_input_update", response.records()},
      {"navigate_login", navigate.records()},
      {"coffer-open-url", link.records()},
      {"coffer-init-data", {{"msg::CfMsgCofferData", &data}}},
      {"coffer-set-settings", {{"msg::CfMsgSetValues", &values}}}};
  std::set<std::string> names, covered;
  for (const packet_notification& n : packet_notifications()) names.insert(n.name);
  for (const record_notification& n : record_notifications()) names.insert(n.name);
  for (const auto& [name, records] : cases) {
    covered.insert(name);
    EXPECT_TRUE(sent_for(records).starts_with("{\"" + name + "\":{")) << name;
  }
  EXPECT_EQ(names, covered) << "each notification has its case";
}

TEST_F(AgentObserver, SendsNothingForRecordsThatHaveNothingToSay) {
  npc_record without_packet;
  set_values_record without_settings;
  EXPECT_EQ(sent_for({{"msg::CfMsgNpc", &without_packet}}), "");
  EXPECT_EQ(sent_for({{"msg::CfMsgSetValues", &without_settings}}), "");
}

}  // namespace
