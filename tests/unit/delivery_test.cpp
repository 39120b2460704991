// The development agent's queue.
#include "agent/delivery.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "messages/commands.h"

namespace {

using namespace std::literals;

// Doesn't return from `notify` while it is held.
struct slow_observer final : implements<slow_observer, iCfClientObs> {
  std::int32_t notify(iCfMsg*) override {
    while (hold) std::this_thread::yield();
    return ++notified;
  }
  std::atomic<bool> hold = false;
  std::atomic<int> notified = 0;
};

}  // namespace

TEST(Delivery, MakesItsCallerWaitInsteadOfGrowing) {
  constexpr int large = 40;
  constexpr std::size_t form_size = std::size_t{1} << 20;
  coffer store;
  responder answers(store);
  slow_observer observer;
  delivery queue(answers);
  EXPECT_TRUE(queue.start(&observer));
  observer.hold = true;
  std::atomic<int> posted = 0;
  std::thread caller([&] {
    for (int i = 0; i < large; ++i) {
      EXPECT_TRUE(queue.post(make_owned<CfMsgGetSettings>(), form_size));
      ++posted;
    }
    EXPECT_TRUE(queue.post(make_owned<CfMsgGetSettings>(), 100 * form_size));
  });
  while (posted < 10) std::this_thread::yield();
  std::this_thread::sleep_for(50ms);
  EXPECT_LT(posted, large);
  observer.hold = false;
  caller.join();
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (observer.notified < large + 2 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
  }
  EXPECT_EQ(observer.notified, large + 2) << "the greeting and all answers";
}
