// What a companion program has done or found, for people or as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

enum class severity { good, note, warning, fault };

struct report_entry {
  const char* subject = "";  // title of the browser, or empty if it is about none
  severity weight = severity::good;
  std::string id;      // stable, for programs: "manifest-missing"
  std::string text;    // one sentence, which names the file
  std::string advice;  // what to do; may be empty
};

class report {
 public:
  // In JSON each entry has its subject under the name `subject`; null if entries have none.
  explicit report(const char* command, const char* subject = "browser")
      : command_(command), subject_(subject) {}

  void add(report_entry entry) { entries_.push_back(std::move(entry)); }

  bool has_faults() const;

  // One line per entry, with the advice below it; or one JSON object, which also says whether
  // everything is good.
  std::string as_text() const;
  std::string as_json() const;

 private:
  const char* command_;
  const char* subject_;
  std::vector<report_entry> entries_;
};
