// The command line of cfsetup.
#pragma once

#include <string>
#include <vector>

#include "tools/setup/browsers.h"

extern const char* const setup_usage;

enum class setup_command { install, remove, list, doctor, help, version };

struct setup_options {
  setup_command command = setup_command::help;
  std::vector<const browser*> browsers;   // as named; empty: those that are found
  std::vector<std::string> chromium_ids;  // valid ones
  std::vector<std::string> firefox_ids;
  std::string host;       // absolute; empty: the host installed with cfsetup
  std::string user_data;  // absolute; empty: the browser's own
  std::string root;       // absolute; empty: the system's
  bool system = false;
  bool force = false;
  bool dry_run = false;
  bool json = false;

  const std::vector<std::string>& ids(id_form form) const {
    return form == id_form::chromium ? chromium_ids : firefox_ids;
  }
};

// False, with the reason in `error`, when the arguments (without the program's name) can't be used.
bool parse_options(const std::vector<std::string>& arguments, setup_options& options,
                   std::string& error);
