// Damaged input from both sides at once, for CFHOST_MUTATION_SECONDS of the environment, or
// briefly.
#include <gtest/gtest.h>

#include <cstdlib>
#include <future>

#include "platform/process_memory.h"
#include "tests/end_to_end/host_session.h"

using namespace std::literals;

namespace {

using clock_type = std::chrono::steady_clock;

// What the store of unfinished messages may hold, and what the sanitizers add to it.
constexpr std::size_t memory_bound = std::size_t{512} * 1024 * 1024;

constexpr std::size_t damaged_header_odds = 3000;

const std::string requests[] = {
    R"({"method":"get-info-for-page","data":{"sender":"t","title":"\u00e4\ud83d\ude00","fHasMultip)"
    R"(leForms":1,"inputs":[{"name":"email","value":null,"dbSchema":"x"},{"id":"e2"}]}})",
    R"({"method":"drop-down","data":null})", R"({"method":"get-settings","data":[1.5,-2e3,true]})"};

constexpr auto page =
    u"msg::CfMsgWebsite\0\0\0s\0\0\xA5A5\xA5A5k\0v\0\0\xA5A5\xA5A5\2\0id\0\xD83D\xDE00\0\0\0\xA5A5"
    u"\xA5A5\0\0\0\0\0\0"sv;
const std::string payloads = hex(page) + ' ' + hex(u"msg::CfMsgWebsiteRsp\0"sv) + hex(page) + ' ' +
                             hex(u"msg::CfMsgOpenUrl\0a1b2\0pages/\"sign\"-in\0"sv);

// The frames of a request, damaged in its text, in its envelopes, and now and then in a header.
std::string damaged_frames(mutator& random) {
  std::string text = requests[random.below(std::size(requests))];
  if (random.below(2) == 0) text = random.mutated(text);
  const std::string id(1, static_cast<char>('a' + random.below(26)));
  request_cutter cutter(text, id, min_request_envelope + random.below(400));
  std::string frames;
  for (std::string e; cutter.next(e);) {
    if (random.below(5) == 0) e = random.mutated(e);
    const std::string frame = make_frame(e);
    frames += random.below(damaged_header_odds) == 0 ? random.mutated(frame) : frame;
  }
  return frames;
}

}  // namespace

TEST(mutation, damaged_input_from_both_sides) {
  const char* const wanted = std::getenv("CFHOST_MUTATION_SECONDS");
  const auto end = clock_type::now() + std::chrono::seconds(wanted ? std::atoi(wanted) : 4);
  std::size_t sent = 0, replies = 0, peak = 0;
  for (std::uint64_t seed = 1; clock_type::now() < end; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    host_session host("quiet\nregister hostile " + std::to_string(seed) + ' ' + payloads);
    auto reader = std::async(std::launch::async, [&host, &replies] {
      std::string last = "{";
      for (; last.front() == '{'; ++replies) last = host.replies(1).back();
      return last;
    });
    mutator random(seed);
    for (; clock_type::now() < end && host.send(damaged_frames(random)); ++sent) {
      if (sent % 100 == 0)
        peak = std::max(peak, platform::resident_memory(host.process().process_id()));
    }
    EXPECT_EQ(host.finish(), 0);
    EXPECT_EQ(reader.get(), "end");
    ASSERT_LT(peak, memory_bound);
  }
  std::cout << sent << " requests, " << replies << " replies, at most " << peak / 1024 << " KiB\n";
}
