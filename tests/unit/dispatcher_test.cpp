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
  std::string posted, requests;
  std::size_t inputs = 0;
};

// The end-to-end tests have the content of the messages.
TEST_F(Dispatcher, PostsOneMessageForEachMethod) {
  check_file([this](const std::string& text) { return outcome(text); }, TABLES "/requests.txt");
  for (const method& m : methods()) {
    const std::string member = "\"method\":\"" + std::string(m.name) + '"';
    EXPECT_NE(requests.find(member), requests.npos) << "no case for " << m.name;
  }
}

TEST_F(Dispatcher, RefusesWhatIsMalformedAndShowsTheRewrittenText) {
  check_file([this](const std::string& text) { return outcome(text); }, TABLES "/refusals.txt");
}

TEST_F(Dispatcher, TakesSoManyInputsAndNoMore) {
  std::string list;
  for (int i = 0; i <= 65'536; ++i) list += "{},";
  outcome(R"({"method":"get-info-for-page","data":{"inputs":[)" + list + "]}}");
  EXPECT_EQ(inputs, 65'536U);
}

}  // namespace
