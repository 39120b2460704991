// The development agent's queue.
#include "agent/delivery.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "messages/commands.h"
#include "messages/website.h"

extern "C" cfApi* Api();

namespace {

using namespace std::literals;

// Which of the thread's next allocations fails: 1 is the next one, 0 means none.
thread_local int failing_allocation = 0;

// Doesn't return from `notify` while it is held. While memory is short, each call makes a later
// allocation of its thread fail than the call before, until none is left to fail.
struct slow_observer final : implements<slow_observer, iCfClientObs> {
  std::int32_t notify(iCfMsg*) override {
    while (hold) std::this_thread::yield();
    if (failing_allocation > 0) short_of_memory = false;
    failing_allocation = short_of_memory ? notified + 1 : 0;
    return ++notified;
  }
  std::atomic<bool> hold = false, short_of_memory = false;
  std::atomic<int> notified = 0;
};

}  // namespace

// Not inlined: where the compiler inlines only one of a pair, it warns that the two don't match.
[[gnu::noinline]] void* operator new(std::size_t size) {
  const bool fails = failing_allocation > 0 && --failing_allocation == 0;
  void* const memory = fails ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
  return memory != nullptr ? memory : throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

// A lack of memory ends neither the caller nor the agent's own thread.
TEST(Delivery, DropsWhatMemoryIsShortFor) {
  static slow_observer observer;
  auto* const client = static_cast<iCfClient*>(Api()->getInterface(client_interface));
  EXPECT_EQ(client->addObserver(&observer), 0);
  const auto page = make_message<CfMsgWebsite>();
  page->inputs.emplace_back().set(u"type", u"password", true);
  observer.short_of_memory = true;
  int left = 0;
  for (int n = 1; left == 0 || observer.short_of_memory || observer.notified < 10; ++n) {
    ASSERT_EQ(page->addRef(), 2) << "Its reference was given back.";
    failing_allocation = n;
    const std::int32_t result = client->post(page.get());
    left = std::exchange(failing_allocation, 0);
    EXPECT_EQ(result, left > 0 ? 0 : 1) << n;
  }
}

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
