// A registration that replaces a faulty one: the command to paste, and the repair that does the
// same.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/repair.h"
#include "tools/setup/setup_options.h"

struct new_registration {
  const browser& to;
  const setup_options& options;
  platform::registration_scope scope;
  const std::vector<std::string>& ids_there;  // of extensions that are let in already
  std::string kept_host;                      // empty: the registration names `own_host`
  const std::string& own_host;                // the installed one

  std::string command() const;

  // Nothing is offered while no extension's id is known.
  void offer(repair_list& repairs) const;
};
