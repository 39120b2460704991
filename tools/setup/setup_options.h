// The command line of cfsetup.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/setup/browsers.h"

enum class setup_command { install, remove, list, doctor };

struct setup_options {
  setup_command command = setup_command::doctor;
  std::vector<const browser*> browsers;   // as named; empty: those found
  std::vector<std::string> chromium_ids;  // valid ones
  std::vector<std::string> firefox_ids;
  std::string host;          // absolute; empty: the host installed with cfsetup
  std::string user_data;     // absolute; empty: the browser's own
  std::string manifest_dir;  // absolute, with one browser; empty: where the browser looks
  std::string root;          // absolute; empty: the system's
  std::string record;        // absolute folder for captures; empty: none are kept
  bool with_values = false;  // of inputs and settings, in captures
  bool flatpak = false;      // for browsers in a Flatpak sandbox
  bool keep_ids = false;     // the ones that a manifest has already
  bool system = false;
  bool force = false;
  bool dry_run = false;
  bool fix = false;
  bool json = false;

  const std::vector<std::string>& ids(id_form form) const {
    return form == id_form::chromium ? chromium_ids : firefox_ids;
  }
  // Whether the manifest lies in a folder of this user that no other browser uses.
  bool has_own_folder() const { return !user_data.empty() || !manifest_dir.empty() || flatpak; }
};

// Nothing if the program is to go on. Otherwise the exit value, after printing the help, the
// version or what is wrong with the arguments.
std::optional<int> parse_cfsetup_options(int argc, char** argv, setup_options& options);
