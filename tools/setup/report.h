// What cfsetup has done or found, for people or as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/setup/browsers.h"

enum class severity { good, note, warning, fault };

struct report_entry {
  const char* browser = "";  // its title; empty for what concerns none
  severity weight = severity::good;
  std::string id;      // stable, for programs: "manifest-missing"
  std::string text;    // one sentence, which names the file
  std::string advice;  // what to do; empty if nothing
};

class report {
 public:
  explicit report(const char* command) : command_(command) {}

  void add(report_entry entry) { entries_.push_back(std::move(entry)); }

  bool has_faults() const;

  // A line per entry, with the advice below it; or one JSON object, which says of the whole whether
  // it is good.
  std::string as_text() const;
  std::string as_json() const;

 private:
  const char* command_;
  std::vector<report_entry> entries_;
};
