// What the doctor can put right by itself.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/report.h"

struct repair {
  const char* browser = "";          // its title
  std::string text;                  // "run cfsetup install ...", for people
  std::function<void(report&)> run;  // enters what it does
};

class repair_list {
 public:
  // What is there already isn't added again.
  void add(repair added);

  // Enters what would be done, or does it and enters that.
  void tell(report& out) const;
  void run(report& out) const;

 private:
  std::vector<repair> repairs_;
};
