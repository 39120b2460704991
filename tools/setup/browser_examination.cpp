#include "tools/setup/browser_examination.h"

#include <tuple>

#include "platform/files.h"
#include "tools/setup/commands.h"
#include "tools/setup/extension_examination.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/flatpak.h"
#include "tools/setup/manifest_choice.h"
#include "tools/setup/new_registration.h"
#include "tools/setup/other_manifest.h"
#include "tools/setup/policies.h"
#include "tools/setup/sandbox.h"

namespace {

using platform::registration_scope;

class browser_examination {
 public:
  browser_examination(const browser& subject, const setup_options& options,
                      const std::string& own_host, report& out, repair_list& repairs)
      : subject_(subject),
        options_(options),
        own_host_(own_host),
        findings_(subject, out),
        repairs_(repairs) {}

  std::optional<host_start> run() {
    policies_ = host_policies(subject_, options_);
    look_at_policy();
    look_for_sandbox();
    choice_ = choose_manifest(subject_, options_, !policies_.forbids_user_hosts.empty());
    if (options_.flatpak) look_into_flatpak();
    if (!is_registered()) return std::nullopt;
    const bool has_choice = policies_.forbids_user_hosts.empty();
    if (has_choice) warn_of_other_manifest(subject_, options_, choice_, findings_);
    for (const manifest_fault& each : taken().faults) fault_of_registration(each.id, each.text);
    return taken().content.has_value() ? read_manifest() : std::nullopt;
  }

 private:
  const present_manifest& taken() const { return choice_.taken(); }

  new_registration registration_of(const std::string& kept_host) const {
    return {subject_, options_, choice_.scope(), taken().ids, kept_host, own_host_};
  }

  // A fault that another registration puts right.
  void fault_of_registration(const char* id, std::string text) {
    const new_registration again = registration_of(host_to_keep());
    findings_.fault(id, std::move(text), again.advice());
    again.offer(repairs_);
  }

  // A host that works need not give way to the installed one.
  std::string host_to_keep() const {
    const std::string& host = taken().host;
    return host != own_host_ && platform::look_at(host).executable ? host : std::string();
  }

  void look_at_policy() {
    if (policies_.blocks_host.empty()) return;
    findings_.fault(
        "policy-blocks-host",
        policies_.blocks_host + " keeps " + subject_.title + " from starting " + host_name,
        "Ask your administrator to allow it in the policy NativeMessagingAllowlist.");
  }

  void look_for_sandbox() {
    const sandbox_verdict verdict = judge_sandbox(subject_, options_);
    options_.flatpak = verdict.is_inside_flatpak;
    if (verdict.entry.has_value()) findings_.add(*verdict.entry);
  }

  void look_into_flatpak() {
    if (!taken().registered) {
      fault_of_registration(
          "sandboxed", "is a Flatpak, whose sandbox keeps it from starting the host by itself");
    } else if (!may_leave_sandbox(subject_, options_)) {
      findings_.fault(
          "permission-missing", "may not start programs outside of its sandbox",
          "It may start any then, not the host alone. Run: " + permission_command(subject_));
    }
  }

  bool is_registered() {
    if (taken().registered) return true;
    if (!policies_.forbids_user_hosts.empty()) {
      findings_.fault("policy-forbids-user-hosts",
                      policies_.forbids_user_hosts + " lets " + subject_.title +
                          " take manifests for all users only, and there is none",
                      "As an administrator run: " + install_for_all());
    } else if (!(options_.flatpak && findings_.has_faults())) {
      std::string error;
      const auto place = chosen_place(subject_, options_, registration_scope::user, error);
      fault_of_registration("manifest-missing",
                            "the host isn't registered: there is no manifest " +
                                (place.file.empty() ? std::string(host_name) : place.file));
    }
    return false;
  }

  // The shared manifest isn't there yet: its ids are those of the user's.
  std::string install_for_all() {
    setup_options named = options_;
    auto& ids = subject_.ids == id_form::chromium ? named.chromium_ids : named.firefox_ids;
    if (ids.empty()) ids = choice_.own.ids;
    return install_command(subject_, named, registration_scope::system, {}, {});
  }

  std::optional<host_start> read_manifest() {
    examine_extensions(subject_, options_, choice_, registration_of(host_to_keep()), findings_,
                       repairs_);
    if (taken().path.empty()) {
      fault_of_registration("path-relative", taken().file + " names the host by \"" +
                                                 taken().content->path.value_or("") +
                                                 "\", no absolute path");
      return std::nullopt;
    }
    if (!findings_.has_faults()) say_good();
    return start();
  }

  // The advice helps whose extension isn't among those.
  void say_good() {
    findings_.good("manifest-good",
                   taken().file + " is as it should be and lets in " + enumeration(taken().ids),
                   options_.ids(subject_.ids).empty()
                       ? "If yours has another id, run: " +
                             command_for("install", subject_, options_, choice_.scope()) +
                             " --add-extension-id " + id_to_fill_in +
                             (host_to_keep().empty() ? "" : " --host " + shell_word(taken().host))
                       : std::string());
  }

  host_start start() {
    const auto& [host, path, ids] = std::tie(taken().host, taken().path, taken().ids);
    host_start start{subject_.title,         host, taken().file, {}, {}, subject_.ids,
                     !findings_.has_faults()};
    const std::string caller = ids.empty() ? std::string() : origin_of(ids.front(), subject_.ids);
    if (subject_.ids == id_form::firefox) start.arguments.push_back(taken().file);
    start.arguments.push_back(caller);
    if (path != host && !platform::look_at(path).executable) {
      fault_of_registration("host-not-executable", path + " can't be run by this user");
      start.is_manifest_good = false;
    }
    const new_registration of_own_host = registration_of({});
    start.install = of_own_host.command();
    const bool is_lost = !platform::look_at(host).executable && host != own_host_;
    if (is_lost && !ids.empty()) of_own_host.offer(repairs_);
    return start;
  }

  const browser& subject_;
  setup_options options_;
  const std::string& own_host_;
  finding_list findings_;
  repair_list& repairs_;
  policy_findings policies_;
  manifest_choice choice_;
};

}  // namespace

std::optional<host_start> examine_browser(const browser& subject, const setup_options& options,
                                          const std::string& own_host, report& out,
                                          repair_list& repairs) {
  return browser_examination(subject, options, own_host, out, repairs).run();
}
