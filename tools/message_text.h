// Messages as a capture keeps them: strict JSON in one line, however the sender wrote it, and
// without secrets unless they are asked for.
#pragma once

#include <optional>
#include <string>

#include "json/node.h"

struct text_rules {
  // Each value of an input and each setting is replaced by a mark with its length, unless it is
  // empty. Addresses lose user, query and fragment.
  bool hide_values = true;
  // Makes equal what differs from run to run: lengths in marks, process numbers, ids of an agent's
  // items.
  bool level = false;
};

// The text of a value, which belongs to a whole tree. A member without a name gets an empty one.
std::string node_text(const json_node& root, const text_rules& rules);

// Nothing, with the reason in `error`, if the host's parser doesn't accept the message.
std::optional<std::string> message_text(std::string message, const text_rules& rules,
                                        std::string& error);
