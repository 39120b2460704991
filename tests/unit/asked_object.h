// An object that stands for one of the client library's.
#pragma once

#include <atomic>
#include <map>
#include <thread>

#include "tests/unit/support.h"

// Answers with records, stays inside `query` while it is held, and counts the calls.
struct asked_object final : message_of<asked_object, iCfMsg> {
  std::int32_t release() override { return ++calls; }
  std::int32_t addRef() override { return ++references; }
  void* query(const cfName& n) override {
    for (++calls; hold;) std::this_thread::yield();
    return records[shown(n.text())];
  }
  std::map<std::string, void*> records;
  std::atomic<int> references = 0, calls = 0;
  std::atomic<bool> hold = false;
};
