// The methods that the extension can ask for, each with what it posts to the agent.
#pragma once

#include <span>
#include <string_view>

#include "json/node.h"

struct method {
  std::string_view name;

  // Builds the method's message from the request's data, which may be null, and posts it to
  // agent_client. False, with nothing posted, if the data is bad.
  bool (*handle)(const json_node* data);
};

// All of them, each name once.
std::span<const method> methods();
