// The order in which the process's objects end.
#include <cstdlib>
#include <thread>

#include "bridge/agent_observer.h"
#include "host/exit_actions.h"
#include "messages/loader/client_library.h"
#include "tests/unit/asked_object.h"
#include "transport/fragment_store.h"

namespace {

using ExitOrder = quiet_test;

cfApi* nothing() { return nullptr; }

void demand(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::_Exit(1);
}

bool is_left_alone() {
  asked_object object;
  return agentObserver.notify(&object) == 0 && object.references + object.calls == 0;
}

asked_object under_way;

void check_unload() {
  demand(is_left_alone() && under_way.calls == 3, "then the observer, once nobody is inside");
  demand(client_library.module == nullptr && client_library.api == nullptr, "then the library");
}

void check_end() {
  demand(fake::system().unloaded == 1, "all are gone");
  std::_Exit(7);
}

[[noreturn]] void exit_with_everything_in_use() {
  std::atexit(check_end);
  register_exit_actions();
  fake::system().library = &fake::system();
  fake::system().entry = reinterpret_cast<void*>(nothing);
  fake::system().on_unload = check_unload;
  demand(load_client_library(u"path"), "loading");
  reassemble(R"({"id":"unfinished","fragment":0,"msg":"QUJD"})");
  demand(process_store().text_size() == 4 && !is_left_alone(), "everything in use");
  under_way.hold = true;
  std::thread([] { agentObserver.notify(&under_way); }).detach();
  while (under_way.calls == 0) std::this_thread::yield();
  std::thread([] {
    while (!is_left_alone()) std::this_thread::yield();
    under_way.hold = false;
  }).detach();
  std::exit(0);
}

[[noreturn]] void close_with_a_call_inside() {
  asked_object object;
  object.hold = true;
  std::thread caller([&object] { agentObserver.notify(&object); });
  while (object.calls == 0) std::this_thread::yield();
  demand(!close_agent_observer(std::chrono::milliseconds(20)), "the wait is bounded");
  demand(is_left_alone(), "nobody comes in any more");
  object.hold = false;
  demand(close_agent_observer(std::chrono::minutes(1)), "who is inside finishes");
  caller.join();
  std::_Exit(7);
}

// An end is final, so each test runs in a process of its own.
TEST_F(ExitOrder, ClosesTheGateAndTheProcessObjectsGoInTheirOrder) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(close_with_a_call_inside(), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(exit_with_everything_in_use(), testing::ExitedWithCode(7), "");
}

}  // namespace
