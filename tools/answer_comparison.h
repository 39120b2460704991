// Compares what two hosts say. The order counts within each kind of notification, but not between
// kinds, since those may come from different threads.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/message_text.h"

class answer_comparison {
 public:
  // Values aren't compared unless the capture has them.
  explicit answer_comparison(bool with_values) : rules_{!with_values, true} {}

  void add_recorded(const std::string& message) { add(message, &answers::recorded); }
  void add_received(const std::string& message) { add(message, &answers::received); }

  // One line for each difference.
  std::vector<std::string> differences() const;

 private:
  struct answers {
    std::vector<std::string> recorded;
    std::vector<std::string> received;
  };

  void add(const std::string& message, std::vector<std::string> answers::*list);

  const text_rules rules_;
  std::map<std::string, answers> by_kind_;
};
