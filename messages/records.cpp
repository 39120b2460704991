#include "messages/records.h"

#include <cstring>

npc_payload payload_of(const npc_record& npc) {
  if (npc.packet == nullptr) return {};
  std::int32_t length = 0;
  std::memcpy(&length, npc.packet->length, sizeof length);
  return {reinterpret_cast<const unsigned char*>(npc.packet + 1), length};
}
