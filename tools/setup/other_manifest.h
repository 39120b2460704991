// The manifest that a browser doesn't take although it is registered: often what the user meant.
#pragma once

#include "tools/setup/finding_list.h"
#include "tools/setup/manifest_choice.h"

// Warns of a user's manifest that the browser skips, and of one that hides another for all users.
void warn_of_other_manifest(const browser& subject, const setup_options& options,
                            const manifest_choice& choice, finding_list& findings);
