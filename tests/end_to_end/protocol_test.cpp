// Exact bytes through the whole host, in both directions.
#include <gtest/gtest.h>

#include "tests/end_to_end/tested_host.h"

using namespace std::literals;

namespace {

constexpr auto posted_page =
    u"msg::CfMsgWebsite\0\0\0tab-12\0\0\xA5A5\xA5A5"
    u"after-url\0\0before-url\0\0click-source\0\0context\0\0document-state\0complete\0"
    u"partially-filled\0"
    u"1\0source\0page-url\0source-context\0\0source-event\0\0"
    u"submit-source\0\0title\0Sign in\0user-state\0load\0\0\xA5A5\xA5A5\1\0"
    u"cf-schema\0\0cf-value\0\0context\0\0form-context\0\0id\0e1\0name\0email\0readonly\0\0"
    u"type\0text\0value\0\0\0\xA5A5\xA5A5\0\0\0\0\0\0"sv;
constexpr auto filled_page =
    u"msg::CfMsgWebsite\0\0\0tab-12\0\0\xA5A5\xA5A5source\0page-url\0\0\xA5A5\xA5A5\1\0"
    u"id\0e1\0name\0email\0type\0text\0value\0ann\0\0\xA5A5\xA5A5\0\0\0\0\0\0"sv;
constexpr auto open_url = u"msg::CfMsgOpenUrl\0a1b2\0pages/sign-in\0"sv;

}  // namespace

TEST(requests, worked_examples_byte_for_byte) {
  tested_host host;
  host.send("\x2F\0\0\0"sv);
  host.send(R"({"id":"k9","fragment":0,"msg":"eyJtZXRob2QiOi"})");
  host.send("\x3D\0\0\0"sv);
  host.send(R"({"id":"k9","fragment":"final","msg":"JnZXQtc2V0dGluZ3MifQ=="})");
  host.send("\x79\1\0\0"sv);
  host.send(
      R"({"id":"r7Kq","fragment":"final","msg":"eyJtZXRob2QiOiJnZXQtaW5mby1mb3ItcGFnZSIsImRhdGEi)"
      R"(Onsic2VuZGVyIjoidGFiLTEyIiwic291cmNlIjoicGFnZS11cmwiLCJ0aXRsZSI6IlNpZ24gaW4iLCJ1c2VyX3N0)"
      R"(YXRlIjoibG9hZCIsImRvY3VtZW50X3N0YXRlIjoiY29tcGxldGUiLCJmSGFzTXVsdGlwbGVGb3JtcyI6MCwiZklz)"
      R"(UGFydGlhbGx5RmlsbGVkIjoxLCJpbnB1dHMiOlt7Im5hbWUiOiJlbWFpbCIsInZhbHVlIjoiIiwidHlwZSI6InRl)"
      R"(eHQiLCJpZCI6ImUxIn1dfX0="})");
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(host.report(2),
            (lines{"post msg::CfMsgGetSettings 0  0", posted("CfMsgWebsite", posted_page)}));
  EXPECT_EQ(host.replies(1), lines{"end"});
}

TEST(notifications, worked_example_byte_for_byte) {
  tested_host host("register deliver " + hex(filled_page));
  auto payload = host.next_frame();
  ASSERT_TRUE(payload);
  EXPECT_EQ(payload->size(), 0x174u);
  EXPECT_EQ(
      payload->replace(25, 32, "ID"),
      R"({"reply":"success","id":"ID","fragment":"final","data":"eyJjb2ZmZXJfaW5mb191cGRhdGUiOnsic2)"
      R"(VuZGVyIjoidGFiLTEyIiwic291cmNlIjoicGFnZS11cmwiLCJpbnB1dHMiOlt7Im5hbWUiOiJlbWFpbCIsInZhbHVl)"
      R"(IjoiYW5uIiwidHlwZSI6InRleHQiLCJpZCI6ImUxIiwicmVhZG9ubHkiOiIiLCJjb250ZXh0IjoiIiwiZm9ybV9jb2)"
      R"(50ZXh0IjoiIiwiZGJTY2hlbWEiOiIiLCJkYnZhbHVlIjoiIn1dLCJkYkl0ZW1zIjpbXX19"})");
  EXPECT_EQ(host.report(1), lines{"notified 0 1"});
  EXPECT_EQ(host.finish(), 0);
}

// The other kinds stand in the tests of foreign libraries.
TEST(notifications, none_for_what_is_damaged) {
  const std::string website = hex(filled_page), response = hex(u"msg::CfMsgWebsiteRsp\0"sv);
  std::string script;
  for (const std::string& parts :
       {website + " length -1", website + " length 190", response + response,
        std::string("values 0"), hex(u"msg::CfMsgWebsiteX\0"sv), hex(u"msg::CfMsgWebsite"sv),
        hex(open_url) + " data values -1"}) {
    script += "register deliver " + parts + '\n';
  }
  tested_host host(script);
  EXPECT_EQ(host.report(7), lines(7, "notified 0 1"));
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(host.replies(4),
            (lines{R"({"coffer-open-url":{"url":"pages/sign-in","uuid":"a1b2"}})",
                   R"({"coffer-init-data":{"fUpdate":1,"flags":0,"agPid":4242,"agStatus":2,)"
                   R"("dbStatus":-1,"settings":{"pwdman.enabled":"true"},)"
                   R"("default_settings":{"pwdman.enabled":"false"}}})",
                   R"({"coffer-set-settings":{"pwdman.enabled":"true"}})", "end"}));
}
