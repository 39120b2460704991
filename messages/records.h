// The records of the client library, read in place at fixed byte offsets from the pointer that
// `query` gave. They belong to the library, and nothing is written to them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "messages/settings.h"

// The block in which a message of the agent arrives.
namespace npc_packet {
constexpr std::size_t length_offset = 84;   // signed 32 bits: the payload's length in bytes
constexpr std::size_t payload_offset = 88;  // the payload, which begins with a type string
}  // namespace npc_packet

// Answered to "msg::CfMsgNpc".
namespace npc_record {
constexpr std::size_t packet_offset = 24;  // pointer to the npc_packet
}  // namespace npc_record

// Answered to "msg::CfMsgCofferData": the state of the store.
namespace coffer_data_record {
constexpr std::size_t fUpdate_offset = 32;
constexpr std::size_t flags_offset = 36;
constexpr std::size_t agPid_offset = 40;
constexpr std::size_t agStatus_offset = 44;
constexpr std::size_t settings_offset = 48;
constexpr std::size_t default_settings_offset = 88;
constexpr std::size_t dbStatus_offset = 128;
}  // namespace coffer_data_record

// Answered to "msg::CfMsgSetValues".
namespace set_values_record {
constexpr std::size_t has_settings_offset = 16;  // 32 bits; 0: there are no settings
constexpr std::size_t settings_offset = 24;
}  // namespace set_values_record

// The bytes of one payload. `length` may be negative, which is as good as 0.
struct npc_payload {
  const unsigned char* bytes = nullptr;
  std::ptrdiff_t length = 0;
};

// The payload behind a "msg::CfMsgNpc" record; an empty one where it points to no packet.
npc_payload payload_of(const void* npc);

std::int32_t record_int(const void* record, std::size_t offset);
const CfSettings& record_settings(const void* record, std::size_t offset);
