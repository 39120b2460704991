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

  // "Run: " and the command, in which an id or a path may be left to fill in.
  std::string advice() const;
  std::string command() const;

  // Nothing is offered where something is left to fill in.
  void offer(repair_list& repairs) const;

 private:
  bool has_id() const;
  bool has_host() const;
};
