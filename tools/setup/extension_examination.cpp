#include "tools/setup/extension_examination.h"

#include "tools/setup/extension_id.h"
#include "tools/setup/places.h"
#include "tools/setup/policies.h"

namespace {

void look_for_useless_origins(const present_manifest& taken, id_form form, finding_list& findings) {
  const auto& allowed = taken.content->allowed;
  for (const std::string& origin : allowed.value_or(std::vector<std::string>())) {
    if (!is_origin(origin, form) || !id_of_origin(origin, form).empty()) continue;
    findings.warning("origin-useless",
                     taken.file + " lists \"" + origin + "\", which no extension has",
                     "Look up your extension's id on the browser's page of extensions.");
  }
}

}  // namespace

void examine_extensions(const browser& subject, const setup_options& options,
                        const manifest_choice& choice, const new_registration& again,
                        finding_list& findings, repair_list& repairs) {
  const present_manifest& taken = choice.taken();
  look_for_useless_origins(taken, subject.ids, findings);
  const auto& named = options.ids(subject.ids);
  for (const std::string& id : named) {
    if (taken.ids.empty() || choice.lets_in(id)) continue;
    findings.fault("origin-absent",
                   taken.file + " doesn't let the extension " + id + " start the host, but " +
                       enumeration(taken.ids),
                   again.advice());
    again.offer(repairs);
  }
  for (const std::string& id : named.empty() ? taken.ids : named) {
    const std::string where = extension_blocked(subject, options, id);
    if (where.empty()) continue;
    findings.fault("policy-blocks-extension", where + " blocks the extension " + id,
                   "Ask your administrator to allow it in the policy ExtensionSettings.");
  }
}
