#include "messages/records.h"

#include <cstring>
#include <new>

namespace {

const unsigned char* at(const void* record, std::size_t offset) {
  return static_cast<const unsigned char*>(record) + offset;
}

// A copy: what lies there was made by other code, with types that need not be these.
template <class Value>
Value value_at(const void* record, std::size_t offset) {
  Value value;
  std::memcpy(&value, at(record, offset), sizeof value);
  return value;
}

}  // namespace

npc_payload payload_of(const void* npc) {
  const auto* const packet = value_at<const void*>(npc, npc_record::packet_offset);
  if (packet == nullptr) return {};
  return {at(packet, npc_packet::payload_offset),
          value_at<std::int32_t>(packet, npc_packet::length_offset)};
}

std::int32_t record_int(const void* record, std::size_t offset) {
  return value_at<std::int32_t>(record, offset);
}

const CfSettings& record_settings(const void* record, std::size_t offset) {
  return *std::launder(reinterpret_cast<const CfSettings*>(at(record, offset)));
}
