// The objects that the library hands to `notify`, in the layouts in which the host reads them.
//
// The host takes a reference on each and doesn't give it back, and needs the object only during the
// call. So the library owns them without regard to their count, and takes that reference back by
// deleting the object.
#pragma once

#include <cstdint>
#include <memory>

#include "agent/byte_sink.h"
#include "messages/agent_interface.h"

// Carries the flat form of a message in a packet.
class CfMsgNpc final : public iCfMsg {
 public:
  std::uint64_t reserved = 0;
  const unsigned char* packet;

  // The bytes begin with the packet's header, whose length field is filled in here.
  explicit CfMsgNpc(byte_list packet_bytes);
  CfMsgNpc(const CfMsgNpc&) = delete;
  CfMsgNpc& operator=(const CfMsgNpc&) = delete;
  std::int32_t release() override;
  void* query(const cfName& n) override;
  cfName name() const override;

 private:
  byte_list bytes_;
};

// The state of the store.
class CfMsgCofferData final : public iCfMsg {
 public:
  std::uint64_t reserved[2] = {};
  std::int32_t fUpdate = 0;
  std::int32_t flags = 0;
  std::int32_t agPid = 0;
  std::int32_t agStatus = 0;
  CfSettings settings;
  CfSettings default_settings;
  std::int32_t dbStatus = 0;

  std::int32_t release() override;
  void* query(const cfName& n) override;
  cfName name() const override;
};

// The settings in force.
class CfMsgSetValues final : public iCfMsg {
 public:
  alignas(8) std::uint32_t has_settings = 1;
  CfSettings settings;

  std::int32_t release() override;
  void* query(const cfName& n) override;
  cfName name() const override;
};

// The object that carries `message`, its form behind the type string `outer` if there is one. Null
// if the message can't be written.
std::unique_ptr<iCfMsg> carry(iCfMsg& message, const cfName* outer = nullptr);
