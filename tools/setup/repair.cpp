#include "tools/setup/repair.h"

#include <algorithm>
#include <utility>

void repair_list::add(repair added) {
  const bool known = std::any_of(repairs_.begin(), repairs_.end(),
                                 [&added](const repair& each) { return each.text == added.text; });
  if (!known) repairs_.push_back(std::move(added));
}

void repair_list::tell(report& out) const {
  for (const repair& each : repairs_) {
    out.add({each.browser, severity::note, "would-fix", "would " + each.text, {}});
  }
}

void repair_list::run(report& out) const {
  for (const repair& each : repairs_) {
    out.add({each.browser, severity::note, "fixing", each.text, {}});
    each.run(out);
  }
}
