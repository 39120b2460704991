// Messages of the host that see how the library treats them.
#pragma once

#include <memory>
#include <vector>

#include "messages/message.h"
#include "tools/examination_child.h"

// A message whose operations are watched. It stays where it is until the process ends, whatever the
// library believes to have freed.
class watched_message {
 public:
  virtual ~watched_message() = default;

  // With the one reference that goes to the library.
  virtual iCfMsg* object() = 0;
  virtual const char* name() const = 0;

  // What can be said when the library is gone: that the message wasn't released, or was changed.
  virtual void judge() = 0;
};

// One of each kind that the host posts, made as the host makes them. They tell `told`, which lives
// on, of each use that isn't right.
std::vector<std::unique_ptr<watched_message>> make_watched_messages(account& told);
