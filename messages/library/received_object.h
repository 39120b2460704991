// The objects that a library hands to `notify`.
//
// The host takes a reference on each and doesn't release it, and needs the object only during the
// call. So a library owns these objects whatever their count is.
#pragma once

#include <cstring>
#include <memory>
#include <utility>

#include "messages/agent_interface.h"
#include "messages/library/byte_sink.h"

// An object that answers to its record's name with the record.
template <class Record>
class received_object final : public message_of<received_object<Record>, iCfMsg> {
 public:
  static constexpr cfName type_name = Record::type_name;

  Record record;

  void* query(const cfName& n) override { return n == type_name ? &record : iCfMsg::query(n); }
};

// An object that carries the flat form of a message in a packet.
class carried_form final : public message_of<carried_form, iCfMsg> {
 public:
  static constexpr cfName type_name = npc_record::type_name;

  // The bytes start with room for the packet's header.
  explicit carried_form(byte_list packet) : bytes_(std::move(packet)) {
    record_.packet = reinterpret_cast<const npc_packet*>(bytes_.data());
    const auto length = static_cast<std::int32_t>(bytes_.size() - sizeof(npc_packet));
    std::memcpy(&bytes_[offsetof(npc_packet, length)], &length, sizeof length);
  }

  void* query(const cfName& n) override { return n == type_name ? &record_ : iCfMsg::query(n); }

 private:
  byte_list bytes_;
  npc_record record_;
};

// Frees an object through its own table, whatever its count.
struct message_deleter {
  void operator()(iCfMsg* message) const { message->deletingDestructor(free_memory); }
};

using owned_message = std::unique_ptr<iCfMsg, message_deleter>;

template <class Message>
using owned = std::unique_ptr<Message, message_deleter>;

template <class Message, class... Arguments>
owned<Message> make_owned(Arguments&&... arguments) {
  return owned<Message>(new Message(std::forward<Arguments>(arguments)...));
}

// Makes the object that carries `message`, its form preceded by the type string `outer` if there is
// one. Null if the message can't be written.
inline owned<carried_form> carry(iCfMsg& message, const cfName* outer = nullptr) {
  byte_sink sink(sizeof(npc_packet));
  cfOStream stream = sink.stream();
  if (outer != nullptr) write_type(stream, *outer);
  if (!message.write(stream)) return nullptr;
  return make_owned<carried_form>(sink.take());
}
