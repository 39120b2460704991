// Browsers that come as a Flatpak or Snap, whose sandbox keeps them from starting programs.
#pragma once

#include <optional>

#include "tools/report.h"
#include "tools/setup/setup_options.h"

struct sandbox_verdict {
  std::optional<report_entry> entry;
  // The manifest that counts is the one inside of the Flatpak.
  bool is_inside_flatpak = false;
};

// Where the browser is installed in the ordinary way too, nobody knows which is meant: then what
// the sandbox does is a warning.
sandbox_verdict judge_sandbox(const browser& about, const setup_options& options);
