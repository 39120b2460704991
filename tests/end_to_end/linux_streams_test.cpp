// Where the system tells how much room a pipe has, even the main thread doesn't wait for ever.
#include <gtest/gtest.h>

#include <thread>

#include "tests/end_to_end/host_session.h"

using namespace std::literals;

TEST(lifecycle, ends_in_time_while_a_request_is_stuck) {
  const std::string url = hex(u"msg::CfMsgOpenUrl\0\0"s + std::u16string(1000, u'x') + u"?\0"s);
  host_session host("post threads 2 1000000 " + url);
  host.send(request(R"({"method":"lock-coffer"})"));
  ASSERT_TRUE(host.next_frame());
  std::this_thread::sleep_for(500ms);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(host.finish(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}
