#include "host/diagnostics/diagnostics.h"

#include <cstdarg>

#include "bridge/agent_observer.h"
#include "bridge/dispatcher.h"
#include "bridge/settings_dump.h"
#include "host/diagnostics/line_format.h"
#include "messages/settings.h"
#include "tests/unit/support.h"

namespace {

using Diagnostics = logged_test;

TEST_F(Diagnostics, AreSwitchedByOneKey) {
  const auto switched = [](const std::string& value) {
    fake::system().config_text.assign(value.begin(), value.end());
    read_dump_switch();
    return std::string(dump_off ? "off" : "on");
  };
  check(switched, "=> off ;; 0 => off ;; 1 => on ;; -1 => on ;; <20>7x => on ;; x1 => off");
  EXPECT_EQ(switched("1" + std::string(257, ' ')) + switched("1" + std::string(258, ' ')), "onoff");
  EXPECT_EQ(fake::system().config_key, "Orvanta/coffer.ini coffer.dump");
}

TEST_F(Diagnostics, CutALineAt254Elements) {
  fake::system().debugger = true;
  fake::system().thread_id = 123456;
  for (const std::size_t length : {233U, 234U, 235U, 9000U}) {
    log_line("%s", std::string(length, 'x').c_str());
    log_line_w(u"%s", wide_string(length, u'x').c_str());
    const std::string line = "[123456] [ cf    ] " + std::string(length, 'x') + "\r\n";
    EXPECT_EQ(fake::system().lines.back(), line.substr(0, 254)) << length;
    EXPECT_EQ(shown(fake::system().wide_lines.back()), shown(line.substr(0, 254))) << length;
  }
}

TEST_F(Diagnostics, ShowABagLineByLineAndAskNothingOfTheSystemWhileOff) {
  CfSettings bag;
  bag.dump(u"x.");
  settings_dump = dump_settings;
  bag.dump(u"x.");
  bag.setEmpty(u"b");
  bag.set(u"a", u"\u20AC %s");
  bag.dump(nullptr);
  const auto& lines = fake::system().wide_lines;
  EXPECT_EQ(lines.at(0).substr(17) + lines.at(1).substr(17) + lines.at(2).substr(17),
            u"x.count=0a=\u20AC %sb=");
  fake::reset(false);
  bag.dump(u"x.");
  settings_dump = nullptr;
  std::string refused = "{}";
  EXPECT_EQ(dispatch_method(refused), 1);
  EXPECT_EQ(reassemble("{}"), "|1");
  testing::internal::CaptureStdout();
  CfMsgWebsite unknown;
  EXPECT_EQ(agentObserver.notify(&unknown), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(fake::system().debug_calls + static_cast<int>(fake::system().wide_lines.size()), 0);
}

}  // namespace
