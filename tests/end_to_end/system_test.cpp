// What the host does with the system: its diagnostics, and the pointer on the screen.
#include <gtest/gtest.h>

#include <cstring>
#include <regex>

#include "tests/end_to_end/system_fixture.h"
#include "tests/end_to_end/tested_host.h"

using namespace std::literals;

namespace {

// The next lines without "[thread] [ cf    ] ", each with a "|" after it; varying addresses show as
// "@".
std::string next_lines(platform::debug_viewer& channel, std::int32_t thread, int count) {
  char start[32];
  std::snprintf(start, sizeof start, "[%4d] [ cf    ] ", thread);
  std::string found;
  for (std::string line; count > 0 && channel.receive(line); --count) {
    if (!line.starts_with(start)) return found + "bad line: " + line;
    found += line.substr(std::strlen(start)) + '|';
  }
  return std::regex_replace(found, std::regex("0x[0-9a-f]+|[0-9a-f]{16}"), "@");
}

// What is logged for every frame before the lines of its members.
std::string frame_lines(const std::string& envelope) {
  const std::string size = std::to_string(envelope.size());
  return "actual_read url is " + size + " buffer:" + envelope + " buflen=" + size +
         "|json_parse reconstruct: root=@ errorPos=N/A errorDesc=N/A\r\n|";
}

const std::string bad = R"({"id":"","fragment":3})";
const std::string whole =
    R"({"id":"k9","fragment":0,"msg":"eyJtZXRob2QiOiJnZXQtc2V0dGluZ3MifQ=="})";
const std::string end_mark = R"({"id":"k9","fragment":"final"})";

}  // namespace

TEST(diagnostics, exact_lines_once_switched_on_and_none_before) {
  const auto channel = open_debug_channel();
  for (const char* const off : {"", "[coffer]\ndump=0\n", "[coffer]\ndump=x1\n"}) {
    write_configuration(off);
    tested_host host("post deliver values 1");
    host.send(make_frame(whole) + make_frame(end_mark));
    EXPECT_EQ(host.report(2).size(), 2u);
  }
  write_configuration("; comment\n[Coffer]\r\n Dump = \"1\" \r\n");
  tested_host host("post deliver values 1");
  // Asked for now, since the host may be gone when the last line comes.
  const std::int32_t thread = main_thread(host.process());
  host.send(make_frame(bad));
  EXPECT_EQ(next_lines(*channel, thread, 7),
            frame_lines(bad) +
                "child->name=id\r\n|id=\r\n|child->name=fragment\r\n|fragment=3\r\n|"
                "Bad fragment received: id:, fragnum:3, final:false|");
  host.send(make_frame(whole));
  EXPECT_EQ(next_lines(*channel, thread, 8),
            frame_lines(whole) +
                "child->name=id\r\n|id=k9\r\n|child->name=fragment\r\n|fragment=0\r\n|"
                "child->name=msg\r\n|msg=eyJtZXRob2QiOiJnZXQtc2V0dGluZ3MifQ==\r\n|");
  host.process().close_output();
  host.send(make_frame(end_mark));
  EXPECT_EQ(next_lines(*channel, thread, 11),
            frame_lines(end_mark) +
                "child->name=id\r\n|id=k9\r\n|child->name=fragment\r\n|fragment=final\r\n|"
                "json_parse: root=@ errorPos=N/A errorDesc=N/A\r\n|Sending reply to Chrome|"
                R"([{"coffer-set-settings":{"pwdman.enabled":"true"}}]|)"
                "Couldn't send string , abort|Test|");
  host.send("\xFF\xFF\xFF\xFF");
  EXPECT_EQ(next_lines(*channel, thread, 1), "i_len >= 8192 but instead is -1; |");
  EXPECT_EQ(host.finish(), 0);
  write_configuration("");
}

TEST(pointer, goes_with_the_request_and_outlives_the_screen) {
  auto screen = std::make_unique<test_screen>();
  const std::string name = screen->name;
  tested_host host;
  std::size_t n = 0;
  const auto unlock_at = [&](std::u16string_view position) {
    host.send(request(R"({"method":"unlock-coffer"})"));
    EXPECT_EQ(host.report(++n).back(),
              posted("CfMsgUnLockDb.1", u"msg::CfMsgUnLockDb.1\0\0\0\0\0\0\0"s.append(position)));
  };
  EXPECT_TRUE(screen->move_pointer(640, 355));
  unlock_at(u"\3\0\x280\0\x163\0"sv);
  EXPECT_TRUE(screen->move_pointer(100, 200));
  unlock_at(u"\3\0\x64\0\xC8\0"sv);
  if (screen_is_optional) {
    screen.reset();
    unlock_at(u"\3\0\0\0\0\0"sv);
    screen = std::make_unique<test_screen>(name);
  }
  EXPECT_TRUE(screen->move_pointer(7, 8));
  unlock_at(u"\3\0\7\0\x8\0"sv);
  EXPECT_EQ(host.finish(), 0);
}
