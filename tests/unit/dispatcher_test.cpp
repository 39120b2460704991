#include "bridge/dispatcher.h"
#include "bridge/methods.h"
#include "messages/loader/client_library.h"
#include "tests/unit/support.h"

namespace {

struct Dispatcher : logged_test, implements<Dispatcher, iCfClient> {
  Dispatcher() { agent_client = this; }
  std::int32_t addObserver(iCfClientObs*) override { return 0; }

  std::int32_t post(iCfMsg* message) override {
    posted = shown(message->name().text()).substr(10);
    if (void* const page = message->query(CfMsgWebsite::type_name)) {
      inputs = static_cast<CfMsgWebsite*>(page)->inputs.size();
    }
    EXPECT_EQ(message->release(), 0) << "posted with one reference";
    return 1;
  }

  // The message that is posted, or what is logged after the parser's line, and the result.
  std::string outcome(std::string text) {
    fake::system().lines.clear();
    posted = "none";
    requests += text;
    const std::int32_t result = dispatch_method(text);
    const auto& lines = fake::system().lines;
    EXPECT_EQ(lines.at(0).find("json_parse: root="), 17U);
    if (lines.size() > 1) posted = lines.back().substr(17 + 28);
    return posted + " " + std::to_string(result);
  }
  void check_outcomes(std::string_view table, int line = __builtin_LINE()) {
    check([this](const std::string& text) { return outcome(text); }, table, __FILE__, line);
  }
  std::string posted, requests;
  std::size_t inputs = 0;
};

// The end-to-end tests have the content of the messages.
TEST_F(Dispatcher, PostsOneMessageForEachMethod) {
  check_outcomes(R"(
    {"data":{},"data":{"title":"x"},"method":"get-info-for-page"} => Website 0
    {"method":"save-info-from-page","data":{"sender":"x"}} => Website 0
    {"method":"open-coffer"} => RunConsole 0 ;; {"method":"open-settings"} => RunConsole 0
    {"method":"configure-coffer"} => RunConsole 0 ;; {"method":"get-settings"} => GetSettings 0
    {"method":"lock-coffer"} => CfDbCmd 0 ;; {"method":"unlock-coffer"} => UnLockDb.1 0
    {"method":"drop-down","data":null} => Website 0
    {"method":"Get-Settings"} => none 0 ;; {"method":"get-settings "} => none 0)");
  for (const method& m : methods()) {
    const std::string member = "\"method\":\"" + std::string(m.name) + '"';
    EXPECT_NE(requests.find(member), requests.npos) << "no case for " << m.name;
  }
}

TEST_F(Dispatcher, RefusesWhatIsMalformedAndShowsTheRewrittenText) {
  check_outcomes(R"(
    {} => no method):{} 1 ;; {"method":"lock-coffer","method":""} => no method):{"method 1
    {"data":{},"method":"get-info-for-page"} => bad data):{"data 1
    {"method":"get-info-for-page"} => bad data):{"method 1
    {"method":"drop-down","data":{}} => bad data):{"method 1
    {"method":"lock-coffer"}{} => none 1 ;; => none 1)");
}

TEST_F(Dispatcher, TakesSoManyInputsAndNoMore) {
  std::string list;
  for (int i = 0; i <= 65'536; ++i) list += "{},";
  outcome(R"({"method":"get-info-for-page","data":{"inputs":[)" + list + "]}}");
  EXPECT_EQ(inputs, 65'536U);
}

}  // namespace
