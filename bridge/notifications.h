// The notifications that the extension can get, each with what it is made from.
#pragma once

#include <span>

#include "messages/message.h"

// Made from a message that comes in a packet.
struct packet_notification {
  cfName type;  // what the packet's payload begins with
  const char* name;
  bool is_wrapped;  // the type stands in front of a whole form, with a type of its own

  // Reads the form at the stream's position, and sends it if it is whole.
  void (*send)(cfIStream& stream, const char* name);
};

// Made from a record.
struct record_notification {
  cfName type;  // the name that an object answers with the record
  const char* name;

  // Sends what the record says, or nothing if it has nothing to say.
  void (*send)(const void* record, const char* name);
};

// All of them, each name and each type once; records in the order in which they are asked for.
std::span<const packet_notification> packet_notifications();
std::span<const record_notification> record_notifications();
