// How the host starts and ends, and how it goes on when one of its sides is gone.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <thread>

#include "tests/end_to_end/tested_host.h"

using namespace std::literals;

namespace {

const std::string lock = request(R"({"method":"lock-coffer"})");

// A notification of several frames.
const std::string long_url = hex(u"msg::CfMsgOpenUrl\0\0"s + std::u16string(1000, u'x') + u"?\0"s);

}  // namespace

TEST(lifecycle, ends_with_its_input) {
  const std::string whole = lock.substr(4);
  const std::pair<std::string, std::size_t> cases[] = {
      {"", 0},
      {"\1", 0},
      {lock + "\1\0\0"s, 1},
      {"\0\x20\0\0"s + lock, 0},
      {"\xFF\xFF\xFF\xFF" + lock, 0},
      {"\xFF\x1F\0\0"s + whole, 1},
      {"\xFF\x1F\0\0{"s, 0},
      {make_frame(whole + std::string(8191 - whole.size(), ' ')), 1}};
  for (const auto& [input, posts] : cases) {
    tested_host host("", PROBE_LIBRARY, {"chrome-extension://abc/", "--help", ""});
    host.send(input);
    EXPECT_EQ(host.finish(), 0);
    EXPECT_EQ(host.report(posts).size(), posts) << to_hex(input);
    EXPECT_EQ(host.replies(1), lines{"end"});
  }
}

TEST(lifecycle, needs_its_library) {
  const auto folder = make_folder();
  std::filesystem::copy_file(PROBE_LIBRARY, folder / LIBRARY_NAME);
  // What the library needs isn't taken from the working directory either.
  std::filesystem::copy(NEEDED_LIBRARY, folder);
  std::filesystem::current_path(folder);
  const std::tuple<std::string, std::string, int> cases[] = {{"", "", 1},
                                                             {"", NO_ENTRY_LIBRARY, 1},
                                                             {"", NEEDING_LIBRARY, 1},
                                                             {"no-api", PROBE_LIBRARY, 2},
                                                             {"no-interface", PROBE_LIBRARY, 2}};
  for (const auto& [script, library, exit_value] : cases) {
    tested_host host(script, library);
    host.send(lock);
    EXPECT_EQ(host.process().wait(20s), exit_value);
    EXPECT_EQ(host.replies(1), lines{"end"});
    EXPECT_EQ(host.report(0), lines{});
  }
  std::filesystem::current_path(folder.parent_path());
  std::filesystem::remove_all(folder);
}

TEST(lifecycle, lives_on_without_a_reader) {
  tested_host host("post deliver " + long_url);
  host.process().close_output();
  for (int i = 0; i < 3; ++i) host.send(lock);
  EXPECT_EQ(host.report(6).size(), 6u);
  EXPECT_EQ(host.finish(), 0);
}

TEST(lifecycle, ends_in_time_while_a_notification_is_stuck) {
  tested_host host("register threads 1 1000000 " + long_url);
  ASSERT_TRUE(host.next_frame());
  std::this_thread::sleep_for(500ms);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(host.finish(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
  int frames = 0;
  while (host.next_frame()) ++frames;
  EXPECT_GT(frames, 120) << "The pipe wasn't full.";
}

// The library also turns off the signal by which a system timer would reach the host.
TEST(lifecycle, ends_in_time_when_its_library_does_not) {
  tested_host host("unload ignore 14\nunload sleep 20000");
  host.send(lock);
  host.report(1);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(host.finish(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

// What was sent before the input ended is handled, however long the reader stays away.
TEST(lifecycle, loses_nothing_while_its_reader_pauses) {
  for (const std::string& script :
       {"post deliver " + long_url, "register threads 1 1000000 " + long_url + "\npost sleep 20"}) {
    tested_host host(script);
    for (int i = 0; i < 100; ++i) host.send(lock);
    host.process().close_input();
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(host.replies(SIZE_MAX).back(), "end") << script;
    EXPECT_EQ(host.process().wait(20s), 0);
    const lines told = host.report(0);
    EXPECT_EQ(std::count_if(told.begin(), told.end(),
                            [](const auto& line) { return line.starts_with("post"); }),
              100);
  }
}

TEST(lifecycle, a_late_notification_does_nothing) {
  tested_host host("unload deliver data values 1 " + long_url);
  host.send(lock);
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(host.report(2).back(), "notified 0 0");
  EXPECT_EQ(host.replies(1), lines{"end"});
}

TEST(concurrency, eight_threads_in_notify_and_requests_between) {
  tested_host host("quiet\nregister threads 8 50 " + long_url + "\npost deliver data");
  std::thread browser([&host] {
    for (int i = 0; i < 50; ++i) host.send(lock);
  });
  std::map<std::string, int> counts;
  for (const std::string& text : host.replies(450)) ++counts[text.substr(text.rfind('x') + 1, 9)];
  browser.join();
  EXPECT_EQ(counts.size(), 9u);
  for (const auto& [end, count] : counts) EXPECT_EQ(count, 50) << end;
  EXPECT_EQ(host.finish(), 0);
}
