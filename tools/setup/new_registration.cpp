#include "tools/setup/new_registration.h"

#include "platform/files.h"
#include "tools/setup/commands.h"
#include "tools/setup/registration.h"

bool new_registration::has_id() const { return !ids_there.empty() || !options.ids(to.ids).empty(); }

bool new_registration::has_host() const {
  return !kept_host.empty() || platform::look_at(own_host).executable;
}

std::string new_registration::command() const {
  return install_command(to, options, scope, ids_there, has_host() ? kept_host : host_to_fill_in);
}

std::string new_registration::advice() const {
  const std::string run = "Run: " + command();
  return has_id() ? run : "Look up your extension's ID on the browser's page of extensions. " + run;
}

void new_registration::offer(repair_list& repairs) const {
  if (!has_id() || !has_host()) return;
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
