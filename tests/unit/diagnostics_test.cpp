#include "host/diagnostics.h"

#include <cstdarg>

#include "bridge/agent_observer.h"
#include "bridge/dispatcher.h"
#include "host/line_format.h"
#include "messages/settings.h"
#include "tests/unit/support.h"

namespace {

using Diagnostics = logged_test;

// A line in memory that ends where its room ends.
template <class Element>
std::string formatted(std::size_t room, const Element* format, ...) {
  const std::unique_ptr<Element[]> line(new Element[room]);
  std::va_list arguments;
  va_start(arguments, format);
  Element* const out = format_line(line.get(), room, format, arguments);
  va_end(arguments);
  return shown(std::basic_string_view<Element>(out));
}

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

TEST_F(Diagnostics, WriteOneLineWithThreadTagAndLineEnd) {
  EXPECT_EQ(log_line("a=%d %s%%", -5, "%s\r\n") + log_line_w(u"%s|%d|%S|%%", u"\u20AC%s", 7, "x"),
            0);
  fake::system().debugger = true;
  fake::system().thread_id = 123456;
  log_line("id=%s\r\n", "x");
  log_line_w(u"x");
  EXPECT_EQ(fake::system().lines, (std::vector<std::string>{"[ 812] [ cf    ] a=-5 %s\r\n%",
                                                            "[123456] [ cf    ] id=x\r\n\r\n"}));
  EXPECT_EQ(fake::system().wide_lines, (std::vector<wide_string>{u"[ 812] [ cf    ] \u20AC%s|7|x|%",
                                                                 u"[123456] [ cf    ] x\r\n"}));
}

TEST_F(Diagnostics, FormatALineOfEitherWidthAsFarAsThereIsRoom) {
  for (const std::size_t room : {1U, 2U, 5U, 9U, 13U, 18U, 40U}) {
    const std::string whole = "_ab|xyz|  -70|%|%u|%123d|%";
    EXPECT_EQ(formatted(room, "_%s|%S|%5d|%%|%u|%123d|%", "ab", u"xyz", -70),
              whole.substr(0, room - 1));
    EXPECT_EQ(formatted(room, u"_%s|%S|%5d|%%|%u|%123d|%", u"ab", "xyz", -70),
              whole.substr(0, room - 1));
  }
}

TEST_F(Diagnostics, CutALineAt254Elements) {
  fake::system().debugger = true;
  for (const std::size_t length : {235U, 236U, 237U, 9000U}) {
    log_line("%s", std::string(length, 'x').c_str());
    log_line_w(u"%s", wide_string(length, u'x').c_str());
    const std::string line = "[ 812] [ cf    ] " + std::string(length, 'x') + "\r\n";
    EXPECT_EQ(fake::system().lines.back(), line.substr(0, 254)) << length;
    EXPECT_EQ(shown(fake::system().wide_lines.back()), shown(line.substr(0, 254))) << length;
  }
}

TEST_F(Diagnostics, ShowABagLineByLineAndAskNothingOfTheSystemWhileOff) {
  CfSettings bag;
  bag.dump(u"x.");
  bag.setEmpty(u"b");
  bag.set(u"a", u"\u20AC %s");
  bag.dump(nullptr);
  const auto& lines = fake::system().wide_lines;
  EXPECT_EQ(lines.at(0).substr(17) + lines.at(1).substr(17) + lines.at(2).substr(17),
            u"x.count=0a=\u20AC %sb=");
  fake::reset(false);
  bag.dump(u"x.");
  std::string refused = "{}";
  EXPECT_EQ(dispatch_method(refused), 1);
  EXPECT_EQ(reassemble("{}"), "|1");
  testing::internal::CaptureStdout();
  EXPECT_EQ(agentObserver.notify(std::make_unique<CfMsgWebsite>().get()), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(fake::system().debug_calls + static_cast<int>(fake::system().wide_lines.size()), 0);
}

}  // namespace
