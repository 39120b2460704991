// Browsers installed as a Flatpak or Snap, whose sandbox keeps them from starting programs.
#pragma once

#include <optional>

#include "tools/report.h"
#include "tools/setup/setup_options.h"

struct sandbox_verdict {
  std::optional<report_entry> entry;
  // The manifest that counts is the one inside the Flatpak.
  bool is_inside_flatpak = false;
};

// If the browser is also installed in the ordinary way, it isn't known which one is meant; then the
// sandbox is only a warning.
sandbox_verdict judge_sandbox(const browser& about, const setup_options& options);
