// What a capture keeps of messages.
#include <gtest/gtest.h>

#include "tests/unit/table.h"
#include "tools/capture_item.h"
#include "tools/message_text.h"

TEST(captures, hide_values_and_shorten_addresses) {
  const auto redacted = [](const text_rules& rules) {
    return [rules](const std::string& message) {
      std::string error;
      return shown(message_text(message, rules, error).value_or(error));
    };
  };
  check_file(redacted({}), TABLES "/redaction.txt");
  check(redacted({false, false}), R"(
{"value":"abc","url":"https://u@h/?q","agPid":7,"s":"\ud83d\ude00\u00e4"} => {"value":"abc","url":"https://u@h/?q","agPid":7,"s":"<F0><9F><98><80><C3><A4>"}
[ {"a" 1,,"b":-0.5}, [[],1e99] ] => [{"a":1,"b":-0.5},[[],null]])");
  check(redacted({true, true}), R"(
{"value":"abc","settings":{"a":"<hidden 17>"},"agPid":7,"uuid":"u","url":"u"} => {"value":"<hidden>","settings":{"a":"<hidden>"},"agPid":"<any>","uuid":"<any>","url":"u"})");
}

TEST(captures, lines_are_read_as_they_were_written) {
  for (
      const std::string line :
      {R"({"kind":"start","time":"2026-11-23T17:00:09.777360Z","format":1,"host":"/usr/libexec/cfhost/cfhost","arguments":["chrome-extension://koaaajlhgidcladmjfjaiamebigekogg/"],"values":false})",
       R"({"kind":"message","time":"2026-11-23T17:00:10.016588Z","from":"host","frames":3,"sizes":[[506,2],[120,1]],"message":{"coffer-set-settings":{"pwdman.enabled":"<hidden 4>"}}})",
       R"({"kind":"unread","time":"2026-11-23T17:00:11.262001Z","from":"browser","bytes":11,"reason":"no envelope: Invalid symbol"})",
       R"({"kind":"end","time":"2026-11-23T17:00:12.828538Z","exit":0})",
       R"({"kind":"end","time":"","reason":"the capture has reached its limit"})"}) {
    std::string error;
    const auto item = parse_capture_line(line, error);
    EXPECT_EQ(item.has_value() ? capture_line(*item) : error, line);
  }
  const auto time = capture_time(std::chrono::microseconds(1'795'453'209'777'360));
  EXPECT_EQ(capture_time_text(time), "2026-11-23T17:00:09.777360Z");
  for (const char* const line : {"", "[]", R"({"kind":"other"})", R"({"time":"","kind":"end"})",
                                 R"({"kind":"start","format":2})"}) {
    std::string error;
    EXPECT_FALSE(parse_capture_line(line, error).has_value()) << line;
    EXPECT_NE(error, "") << line;
  }
}
