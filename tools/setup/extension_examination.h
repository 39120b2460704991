// Whether the extensions that are meant may start the host.
#pragma once

#include "tools/setup/finding_list.h"
#include "tools/setup/manifest_choice.h"
#include "tools/setup/new_registration.h"

// Looks at those that the options name, or else at those that the manifest lets in. `again` puts
// right what is wrong with the manifest.
void examine_extensions(const browser& subject, const setup_options& options,
                        const manifest_choice& choice, const new_registration& again,
                        finding_list& findings, repair_list& repairs);
