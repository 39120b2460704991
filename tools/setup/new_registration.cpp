#include "tools/setup/new_registration.h"

#include "tools/setup/commands.h"
#include "tools/setup/registration.h"

std::string new_registration::command() const {
  return install_command(to, options, scope, ids_there, kept_host);
}

void new_registration::offer(repair_list& repairs) const {
  if (ids_there.empty() && options.ids(to.ids).empty()) return;
  setup_options again = options;
  again.browsers = {&to};
  again.system = scope == platform::registration_scope::system;
  again.keep_ids = true;
  again.force = true;
  again.dry_run = false;
  const std::string& host = kept_host.empty() ? own_host : kept_host;
  repairs.add({to.title, "run " + command(),
               [again, host](report& out) { install(again, host, host, out); }});
}
