// The notifications that the extension can get, each with what it is made from.
#pragma once

#include <span>

#include "messages/message.h"

// Made from a message that comes in a packet.
struct packet_notification {
  cfName type;  // what the packet's payload begins with
  const char* name;
  bool is_wrapped;  // the type precedes a whole form, which has a type of its own

  // Reads the form at the stream's position and, if it is whole, sends the notification.
  void (*send)(cfIStream& stream, const char* name);
};

// Made from a record.
struct record_notification {
  cfName type;  // the name that an object answers with the record
  const char* name;

  // Sends the notification, or nothing if the record has nothing to report.
  void (*send)(const void* record, const char* name);
};

// All of them; each name and each type occurs once. Records are in the order in which they are
// asked for.
std::span<const packet_notification> packet_notifications();
std::span<const record_notification> record_notifications();
