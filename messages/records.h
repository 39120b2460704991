// The records of the client library: what it hands to `notify`, returned by `query` for their
// names. The host reads them in place, so the layouts are fixed. They belong to the library, and
// the host writes nothing to them. Bytes named `unused` are the library's own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "messages/name.h"
#include "messages/settings.h"

// The block in which a message of the agent arrives. The payload, which begins with a type string,
// follows it. A packet may lie at any address.
struct npc_packet {
  unsigned char unused[84];
  unsigned char length[4];  // of the payload in bytes, signed, low byte first
};

struct npc_record {
  static constexpr cfName type_name{u"msg::CfMsgNpc"};

  unsigned char unused[24] = {};
  const npc_packet* packet = nullptr;
};

// The state of the store.
struct coffer_data_record {
  static constexpr cfName type_name{u"msg::CfMsgCofferData"};

  unsigned char unused[32] = {};
  std::int32_t fUpdate = 0;
  std::int32_t flags = 0;
  std::int32_t agPid = 0;
  std::int32_t agStatus = 0;
  CfSettings settings;
  CfSettings default_settings;
  std::int32_t dbStatus = 0;
};

struct set_values_record {
  static constexpr cfName type_name{u"msg::CfMsgSetValues"};

  unsigned char unused[16] = {};
  std::uint32_t has_settings = 0;  // 0: there are no settings
  CfSettings settings;
};

// The bytes of one payload. A negative `length` counts as 0.
struct npc_payload {
  const unsigned char* bytes = nullptr;
  std::ptrdiff_t length = 0;
};

// The payload of a record; an empty one if it points to no packet.
npc_payload payload_of(const npc_record& npc);
