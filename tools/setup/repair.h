// What the doctor can repair by itself.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/report.h"

struct repair {
  const char* browser = "";          // its title
  std::string text;                  // "run cfsetup install ...", for people
  std::function<void(report&)> run;  // reports what it does
};

class repair_list {
 public:
  // Adds a repair unless the same one is there already.
  void add(repair added);

  // Reports what would be done, or does it and reports that.
  void tell(report& out) const;
  void run(report& out) const;

 private:
  std::vector<repair> repairs_;
};
