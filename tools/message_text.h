// Messages as a capture keeps them: JSON by the letter, in one line, whatever the sender's spelling
// was, and without secrets unless they are asked for.
#pragma once

#include <optional>
#include <string>

#include "json/node.h"

struct text_rules {
  // A mark of its length takes the place of each value of an input and of each setting, unless it
  // is empty. Addresses lose user, query and fragment.
  bool hide_values = true;
  // What differs from one run to the next comes out alike: lengths in marks, numbers of processes,
  // ids of what an agent keeps.
  bool level = false;
};

// The text of a value, of which its whole tree is part. A member without a name gets an empty one.
std::string node_text(const json_node& root, const text_rules& rules);

// Nothing, with the reason in `error`, for what the host's parser doesn't read as a message.
std::optional<std::string> message_text(std::string message, const text_rules& rules,
                                        std::string& error);
