#include "tools/setup/doctor.h"

#include <set>
#include <utility>

#include "tools/setup/browser_examination.h"
#include "tools/setup/places.h"

void examine(const setup_options& options, const std::string& own_host, report& out,
             repair_list& repairs) {
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) {
    out.add({"", severity::fault, "no-browser", "no browser was found on this system",
             "Name yours with --browser."});
  }
  // Browsers of one kind start a host alike.
  std::set<std::pair<std::string, id_form>> examined;
  for (const browser* const each : browsers) {
    const auto start = examine_browser(*each, options, own_host, out, repairs);
    if (!start.has_value() || !examined.insert({start->path, start->kind}).second) continue;
    examine_host(*start, out, repairs);
  }
}
