#include "tools/setup/other_manifest.h"

#include "tools/setup/commands.h"

void warn_of_other_manifest(const browser& subject, const setup_options& options,
                            const manifest_choice& choice, finding_list& findings) {
  const present_manifest& own = choice.own;
  const present_manifest& shared = choice.shared;
  if (!own.registered || !shared.registered) return;
  const std::string remove =
      command_for("remove", subject, options, platform::registration_scope::user) + " --force";
  if (choice.takes_shared) {
    const std::string why = !own.faults.empty() ? own.faults.front().text
                            : own.path.empty()  ? own.file + " names the host by no absolute path"
                                                : own.file + " doesn't let the extension in";
    findings.warning(
        "user-manifest-skipped",
        why + "; the browser skips it and takes " + shared.file + ", which all users share",
        "If it is a leftover, run: " + remove);
  } else if (own.text.empty() || own.text != shared.text) {
    findings.warning("system-manifest-hidden",
                     own.file + " hides " + shared.file +
                         ", which all users share and which says something else",
                     "If the shared one is meant, run: " + remove);
  }
}
