// What the host does when memory runs out.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/process_memory.h"
#include "tests/end_to_end/tested_host.h"

namespace {

// Serves a page and a notification with memory that runs out at that call, and returns the exit
// value, or -2 if the output isn't whole.
int exit_value_with(const std::string& failing_allocation, std::size_t& replies) {
  setenv("LD_PRELOAD", FAILING_MEMORY, 1);
  setenv("CFHOST_FAILING_ALLOCATION", failing_allocation.c_str(), 1);
  tested_host host("post deliver data");
  unsetenv("LD_PRELOAD");
  unsetenv("CFHOST_FAILING_ALLOCATION");
  host.send(request(R"({"method":"get-info-for-page","data":{"title":"\u00e4 long enough title",)"
                    R"("inputs":[{"name":"pass","value":"some value that is long"}]}})"));
  const int value = host.finish();
  const lines texts = host.replies(2);
  replies = texts.size() - 1;
  return texts.back() == "end" ? value : -2;
}

}  // namespace

TEST(memory, that_runs_out_ends_the_host_or_drops_what_needed_it) {
  for (const char* const mark : {"", "+"}) {
    std::size_t replies = 0;
    int ended = 0, dropped = 0, n = 1;
    for (; n < 1000; ++n) {
      const int value = exit_value_with(std::to_string(n) + mark, replies);
      ASSERT_TRUE(value == 0 || value == 3) << value << " at allocation " << n << mark;
      if (value == 0 && replies == 1 && n > 20) break;
      ++(value == 3 ? ended : dropped);
    }
    EXPECT_GT(ended, 15);
    EXPECT_GE(dropped, 1) << "The memory of a frame is tested.";
    std::cout << n << " allocations, " << ended << " ends\n";
  }
}

TEST(memory, of_large_requests_goes_back) {
  tested_host host;
  std::string large = R"({"method":"get-settings","x":[)";
  while (large.size() < 2'200'000) large += "1 ";
  large += "]}";
  for (std::size_t i = 0; i < 10; ++i) {
    std::string envelope;
    request_cutter cutter(large, "large", max_request_envelope);
    while (cutter.next(envelope)) host.send(make_frame(envelope));
    // When the second one has come, the first one has been handled.
    host.send(request(R"({"method":"lock-coffer"})"));
    EXPECT_EQ(host.report(2 * i + 2).size(), 2 * i + 2);
    EXPECT_LT(platform::resident_memory(host.process().process_id()), 6U * 1024 * 1024);
  }
  EXPECT_EQ(host.finish(), 0);
}
