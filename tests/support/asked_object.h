// An object of the client library's, and what it holds.
#pragma once

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include "messages/records.h"
#include "tests/support/payload.h"

using record_list = std::vector<std::pair<cfName, void*>>;

// Answers with records, stays inside `query` while it is held, and counts what is asked of it.
struct asked_object final : message_of<asked_object, iCfMsg> {
  std::int32_t release() override { return ++calls; }
  std::int32_t addRef() override { return ++references; }
  void* query(const cfName& n) override {
    for (++calls; hold;) std::this_thread::yield();
    for (const auto& [name, record] : records) {
      if (name == n) return record;
    }
    return nullptr;
  }
  record_list records;
  std::atomic<int> references = 0, calls = 0;
  std::atomic<bool> hold = false;
};

// A packet, at an odd address, that ends where its memory ends.
struct packet {
  packet(std::string_view payload, std::int32_t length)
      : bytes(std::string(84, 'x') + word(static_cast<std::uint32_t>(length)).append(payload)) {
    npc.packet = reinterpret_cast<const npc_packet*>(bytes.memory.get() + 1);
  }
  explicit packet(std::string_view payload)
      : packet(payload, static_cast<std::int32_t>(payload.size())) {}
  record_list records() { return {{npc_record::type_name, &npc}}; }

  odd_payload bytes;
  npc_record npc;
};
