#include "agent/received_objects.h"

#include <cstddef>
#include <cstring>

#include "messages/records.h"

// Not standard-layout types, for which the compilers support offsetof only with a warning.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(CfMsgNpc, packet) == npc_record::packet_offset);
static_assert(offsetof(CfMsgCofferData, fUpdate) == coffer_data_record::fUpdate_offset);
static_assert(offsetof(CfMsgCofferData, flags) == coffer_data_record::flags_offset);
static_assert(offsetof(CfMsgCofferData, agPid) == coffer_data_record::agPid_offset);
static_assert(offsetof(CfMsgCofferData, agStatus) == coffer_data_record::agStatus_offset);
static_assert(offsetof(CfMsgCofferData, settings) == coffer_data_record::settings_offset);
static_assert(offsetof(CfMsgCofferData, default_settings) ==
              coffer_data_record::default_settings_offset);
static_assert(offsetof(CfMsgCofferData, dbStatus) == coffer_data_record::dbStatus_offset);
static_assert(offsetof(CfMsgSetValues, has_settings) == set_values_record::has_settings_offset);
static_assert(offsetof(CfMsgSetValues, settings) == set_values_record::settings_offset);
#pragma GCC diagnostic pop

CfMsgNpc::CfMsgNpc(byte_list packet_bytes) : bytes_(std::move(packet_bytes)) {
  packet = bytes_.data();
  const auto length = static_cast<std::int32_t>(bytes_.size() - npc_packet::payload_offset);
  std::memcpy(bytes_.data() + npc_packet::length_offset, &length, sizeof length);
}

std::int32_t CfMsgNpc::release() { return iCfMsg::release(); }

void* CfMsgNpc::query(const cfName& n) { return answer(n, {npc_name, iCfMsg::type_name}); }

cfName CfMsgNpc::name() const { return npc_name; }

std::int32_t CfMsgCofferData::release() { return iCfMsg::release(); }

void* CfMsgCofferData::query(const cfName& n) {
  return answer(n, {coffer_data_name, iCfMsg::type_name});
}

cfName CfMsgCofferData::name() const { return coffer_data_name; }

std::int32_t CfMsgSetValues::release() { return iCfMsg::release(); }

void* CfMsgSetValues::query(const cfName& n) {
  return answer(n, {set_values_name, iCfMsg::type_name});
}

cfName CfMsgSetValues::name() const { return set_values_name; }

std::unique_ptr<iCfMsg> carry(iCfMsg& message, const cfName* outer) {
  byte_sink sink(npc_packet::payload_offset);
  cfOStream stream = sink.stream();
  if (outer != nullptr) write_type(stream, *outer);
  if (!message.write(stream)) return nullptr;
  return std::make_unique<CfMsgNpc>(sink.take());
}
