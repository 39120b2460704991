// Which of a browser's manifests it takes: the user's own, or the one that all users share.
#pragma once

#include <string>

#include "tools/setup/present_manifest.h"
#include "tools/setup/setup_options.h"

struct manifest_choice {
  present_manifest own;
  present_manifest shared;
  bool takes_shared = false;
  bool takes_either = false;  // the shared one for an extension that its own doesn't let in

  const present_manifest& taken() const { return takes_shared ? shared : own; }
  platform::registration_scope scope() const;

  // Whether the browser finds the extension in one of them that it can use.
  bool lets_in(const std::string& id) const;
};

// For the extensions that the options name, or for any. If neither manifest is any good, its own
// counts. `forbids_own`: a policy keeps the browser from taking that.
manifest_choice choose_manifest(const browser& of, const setup_options& options, bool forbids_own);
