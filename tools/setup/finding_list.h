// What is found of one browser, on its way into the report.
#pragma once

#include <string>
#include <utility>

#include "tools/report.h"
#include "tools/setup/browsers.h"

class finding_list {
 public:
  finding_list(const browser& subject, report& out) : subject_(subject), out_(out) {}

  void fault(const char* id, std::string text, std::string advice) {
    add({subject_.title, severity::fault, id, std::move(text), std::move(advice)});
  }
  void warning(const char* id, std::string text, std::string advice) {
    add({subject_.title, severity::warning, id, std::move(text), std::move(advice)});
  }
  void good(const char* id, std::string text, std::string advice) {
    add({subject_.title, severity::good, id, std::move(text), std::move(advice)});
  }
  void add(report_entry entry) {
    has_faults_ = has_faults_ || entry.weight == severity::fault;
    out_.add(std::move(entry));
  }

  bool has_faults() const { return has_faults_; }

 private:
  const browser& subject_;
  report& out_;
  bool has_faults_ = false;
};
