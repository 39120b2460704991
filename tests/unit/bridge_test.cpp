#include "bridge/dispatcher.h"
#include "bridge/rendering.h"
#include "messages/client_library.h"
#include "tests/unit/support.h"

namespace {

struct Dispatcher : logged_test, iCfClient {
  Dispatcher() {
    agent_client = this;
    fake::system().cursor = {640, 355};
  }
  std::int32_t addObserver(iCfClientObs*) override { return 0; }

  // Records a page as its picture, and the type and form of other messages.
  std::int32_t post(iCfMsg* message) override {
    const std::string type = shown(message->name().text()).substr(10);
    auto* const page = dynamic_cast<CfMsgWebsite*>(message);
    posted = page != nullptr         ? picture(*page)
             : type == "GetSettings" ? type
                                     : type + shown(form_of(*message).substr(2 * type.size() + 22));
    EXPECT_EQ(message->release(), 0) << "posted with one reference";
    return 1;
  }

  // What is posted, or what is logged behind the parser's line, and the result.
  std::string outcome(std::string text) {
    fake::system().lines.clear();
    posted = "none";
    const std::int32_t result = dispatch_method(text);
    const auto& lines = fake::system().lines;
    EXPECT_EQ(lines.at(0).find("json_parse: root="), 17U);
    if (lines.size() > 1) posted = lines.back().substr(17 + 28);
    return posted + " " + std::to_string(result);
  }
  void check_outcomes(const std::string& table) {
    check([this](const std::string& text) { return outcome(text); }, table);
  }
  std::string posted;
};

TEST_F(Dispatcher, PostsOneMessageForEachMethod) {
  check_outcomes(R"(
    {"method":"save-info-from-page","data":{"sender":"x"}} => x|11|0,0,0 0
    {"data":{},"data":{"title":"x"},"method":"get-info-for-page"} => |11 title=x|0,0,0 0
    {"method":"open-coffer"} => RunConsole<00><00><00><00><01><00><00><00><00><00><00><00> 0
    {"method":"open-settings"} => RunConsole<00><00><00><00><05><00><00><00><00><00><00><00> 0
    {"method":"configure-coffer"} => RunConsole<00><00><00><00><03><00><00><00><00><00><00><00> 0
    {"method":"get-settings","data":[1,2]} => GetSettings 0
    [{"method"},"get-settings"] => GetSettings 0
    {"method":"x","x":{"method":"y"},"method":"get-settings\u0000","method":7} => GetSettings 0
    {"method":"drop-down","data":null} => |1 user-state=drop-down|3,640,355 0
    {"data":{"user_state":"x"},"method":"drop-down"} => |11 user-state=drop-down|3,640,355 0
    {"method":"Get-Settings"} => none 0 ;; {"method":"get-settings "} => none 0)");
  const std::string zeros = shown(std::string(12, '\0')), lock = R"({"method":"lock-coffer"})",
                    unlock = R"({"method":"unlock-coffer"})";
  EXPECT_EQ(outcome(lock), "CfDbCmd<00><00><00><00><05>" + zeros + "<00><FF><FF><FF><FF> 0");
  EXPECT_EQ(outcome(unlock),
            "UnLockDb.1" + zeros + "<03><00><00><00><80><02><00><00>c<01><00><00> 0");
  fake::system().cursor.reset();
  EXPECT_EQ(outcome(unlock), "UnLockDb.1" + zeros + "<03><00><00><00>" + zeros.substr(16) + " 0");
  EXPECT_EQ(outcome(R"({"method":"drop-down","data":null})"), "|1 user-state=drop-down|0,0,0 0");
}

TEST_F(Dispatcher, RefusesWhatIsMalformedAndShowsTheRewrittenText) {
  check_outcomes(R"(
    {} => no method):{} 1 ;; [] => no method):[] 1 ;; {"method":5} => no method):{"method 1
    {"METHOD":"get-settings"} => no method):{"METHOD 1 ;; {"method":""} => no method):{"method 1
    {"method":"lock-coffer","method":""} => no method):{"method 1
    {"x":{"method":"lock-coffer"}} => no method):{"x 1
    {"method":"get-info-for-page"} => bad data):{"method 1
    {"method":"get-info-for-page","data":null} => bad data):{"method 1
    {"data":{},"method":"get-info-for-page"} => bad data):{"data 1
    {"method":"save-info-from-page","data":["title","x"]} => bad data):{"method 1
    {"data":{"title":"x"},"data":"x","method":"save-info-from-page"} => bad data):{"data 1
    {"method":"drop-down"} => bad data):{"method 1
    {"method":"drop-down","data":{}} => bad data):{"method 1
    {"method":"drop-down","data":"null"} => bad data):{"method 1)");
  EXPECT_EQ(outcome(R"({"method":"lock-coffer"}{})"), "none 1");
  EXPECT_EQ(outcome(""), "none 1");
  EXPECT_EQ(fake::system().lines[0].substr(17),
            "json_parse: root=" + null_address() + " errorPos=N/A errorDesc=N/A\r\n");
}

TEST_F(Dispatcher, TakesThePageIntoTheMessage) {
  const auto page_of = [this](const std::string& page) {
    return outcome("{\"method\":\"get-info-for-page\",\"data\":{" + page + "}}");
  };
  check(page_of,
        R"(
    "x":1 => |11|0,0,0 0 ;; 1 => |11|0,0,0 0 ;; "sender":"\ud83d\ude00<C3><A9>" => )"
        "<D83D><DE00><E9>|11|0,0,0 0"
        R"(
    "source":"a","title":"b","user_state":"c" => |11 source=a title=b user-state=c|0,0,0 0
    "document_state":"d","context":"e" => |11 context=e document-state=d|0,0,0 0
    "before_url":"f","after_url":"g" => |11 after-url=g before-url=f|0,0,0 0
    "source_event":"h","source_context":"i" => |11 source-context=i source-event=h|0,0,0 0
    "click_source":"j","submit_source":"k" => |11 click-source=j submit-source=k|0,0,0 0
    "user-state":"x","Title":"x","form_context":"x","auxText":"x" => |11|0,0,0 0
    "title":"a","title":"b" => |11 title=b|0,0,0 0 ;; "title":"a","title":null => |11|0,0,0 0
    "title":"a","title":5,"title":{"title":"x"},"title":[] => |11 title=a|0,0,0 0
    "sender":"a","sender":null => |11|0,0,0 0 ;; "title":"a\u0000b" => |11 title=a|0,0,0 0
    "fHasMultipleForms":2 => |12 has-multiple-forms=1|0,0,0 0
    "fIsPartiallyFilled":-1,"fIsPartiallyFilled":true => |12 partially-filled=1|0,0,0 0
    "fHasMultipleForms":1,"fHasMultipleForms":0 => |11|0,0,0 0
    "fHasMultipleForms":4294967296,"fIsPartiallyFilled":1.0 => |11|0,0,0 0
    "navigate_login":"" => |12|0,0,0 0 ;; "navigate_login":7 => |11|0,0,0 0
    "navigate_login":"a","navigate_login":null => |12 navigate-login=a|0,0,0 0
    "inputs":[5,"x",null,[],{"name":"a"}] => |11|9 name=a|0,0,0 0 ;; "inputs":[{}] => |11|9|0,0,0 0
    "inputs":[{"name":"a"}],"inputs":null,"inputs":[{"name":"b"}] => |11|9 name=a|9 name=b|0,0,0 0
    "inputs":{"x":{"name":"a"}} => |11|0,0,0 0 ;; "inputs":[{"id":12,"title":"x"}] => |11|9|0,0,0 0
    "inputs":[{"value":"a","value":null,"type":"b","type":1,"id":"c"}] => |11|9 id=c type=b|0,0,0 0
    "inputs":[{"readonly":"1","context":"2","form_context":"3","dbSchema":"4","dbvalue":"5"}] => )"
        "|11|9 cf-schema=4 cf-value=5 context=2 form-context=3 readonly=1|0,0,0 0");
}

// Fills a bag from "key=value,key=value".
void fill(propsW_t& bag, const wide_string& pairs) {
  for (std::size_t at = 0; at < pairs.size(); ++at) {
    const std::size_t end = std::min(pairs.find(u',', at), pairs.size()),
                      middle = pairs.find(u'=', at);
    bag.set(pairs.substr(at, middle - at).c_str(),
            pairs.substr(middle + 1, end - middle - 1).c_str(), true);
    at = end;
  }
}

TEST(Rendering, WritesAWebsite) {
  CfMsgWebsite site, other;
  pair_stream stream, other_stream;
  site.sender = u"tab-12";
  site.auxText = u"never shown";
  fill(site.props, u"title=Sign in,context=login,source=page-a/b,has-multiple-forms=1");
  site.inputs.resize(2);
  fill(site.inputs[0], u"name=email,value=me,type=text,id=e1,cf-schema=user,cf-value=me");
  fill(site.inputs[1], u"name=pass,type=password,id=e2,readonly=1,form-context=f1,tenth=x");
  EXPECT_EQ(render_website(stream, site).str(),
            R"("sender":"tab-12","context":"login","has-multiple-forms":"1","source":"page-a/b",)"
            R"("title":"Sign in","inputs":[{"name":"email","value":"me","type":"text","id":"e1",)"
            R"("readonly":"","context":"","form_context":"","dbSchema":"user","dbvalue":"me"},)"
            R"({"name":"pass","value":"","type":"password","id":"e2","readonly":"1","context":"",)"
            R"("form_context":"f1","dbSchema":"","dbvalue":""}],"dbItems":[],)");
  fill(other.props, u"user_state=,sender=x,alpha=a/b\n,Zed=/,=e,\xD800=\u00E9\xDC00");
  EXPECT_EQ(shown(render_website(other_stream, other).str()),
            R"("sender":"","":"e","Zed":"/","alpha":"a\/b\n","sender":"x","user_state":"",)"
            R"("<EF><BF><BD>":"<C3><A9><EF><BF><BD>","inputs":[],"dbItems":[],)");
}

}  // namespace
