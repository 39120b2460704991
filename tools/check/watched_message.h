// The host's messages, watching how the library treats them.
#pragma once

#include <memory>
#include <vector>

#include "messages/message.h"
#include "tools/examination_child.h"

// A message whose operations are watched. It stays in memory until the process ends, even if the
// library believes that it has freed it.
class watched_message {
 public:
  virtual ~watched_message() = default;

  // The message, with the one reference that goes to the library.
  virtual iCfMsg* object() = 0;
  virtual const char* name() const = 0;

  // Called when the library is gone: reports if the message wasn't released, or was changed.
  virtual void judge() = 0;
};

// One of each kind that the host posts, made as the host makes them. They report each wrong use to
// `told`, which must outlive them.
std::vector<std::unique_ptr<watched_message>> make_watched_messages(account& told);
