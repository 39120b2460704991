#include "tools/setup/doctor.h"

#include <algorithm>
#include <optional>
#include <set>

#include "platform/files.h"
#include "tools/setup/commands.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/flatpak.h"
#include "tools/setup/host_examination.h"
#include "tools/setup/manifest.h"
#include "tools/setup/places.h"
#include "tools/setup/policies.h"
#include "tools/setup/registration.h"
#include "tools/setup/sandbox.h"

namespace {

using platform::registration_scope;

class browser_examination {
 public:
  browser_examination(const browser& subject, const setup_options& options,
                      const std::string& own_host, report& out, repair_list& repairs)
      : subject_(subject), options_(options), own_host_(own_host), out_(out), repairs_(repairs) {}

  // The host that the browser would start, if the manifest names one.
  std::optional<host_start> run() {
    policies_ = host_policies(subject_, options_);
    look_at_policy();
    look_for_sandbox();
    if (!find_manifest()) return std::nullopt;
    return read_manifest();
  }

 private:
  void fault(const char* id, std::string text, std::string advice) {
    has_faults_ = true;
    out_.add({subject_.title, severity::fault, id, std::move(text), std::move(advice)});
  }
  void warning(const char* id, std::string text, std::string advice) {
    out_.add({subject_.title, severity::warning, id, std::move(text), std::move(advice)});
  }

  // A fault that a new registration repairs. Without an id there is nothing to register.
  void fault_of_registration(const char* id, std::string text) {
    fault(id, std::move(text), "Run: " + install_again());
    if (ids_.empty() && options_.ids(subject_.ids).empty()) return;
    setup_options again = options_;
    again.browsers = {&subject_};
    again.system = scope_ == registration_scope::system;
    again.keep_ids = true;
    again.force = true;
    again.dry_run = false;
    const std::string host = host_to_keep().empty() ? own_host_ : host_to_keep();
    repairs_.add({subject_.title, "run " + install_again(),
                  [again, host](report& out) { install(again, host, host, out); }});
  }

  std::string install_again() {
    return install_command(subject_, options_, scope_, ids_, host_to_keep());
  }

  // A host that can be started needn't be replaced by the installed one.
  std::string host_to_keep() const {
    return host_ != own_host_ && platform::look_at(host_).executable ? host_ : std::string();
  }

  void look_at_policy() {
    if (policies_.blocks_host.empty()) return;
    fault("policy-blocks-host",
          policies_.blocks_host + " keeps " + subject_.title + " from starting " + host_name,
          "Ask your administrator to allow it in the policy NativeMessagingAllowlist.");
  }

  void look_for_sandbox() {
    const sandbox_verdict verdict = judge_sandbox(subject_, options_);
    if (verdict.entry.has_value()) {
      has_faults_ = has_faults_ || verdict.entry->weight == severity::fault;
      out_.add(*verdict.entry);
    }
    if (verdict.is_inside_flatpak) look_into_flatpak();
  }

  void look_into_flatpak() {
    options_.flatpak = true;
    if (registered(scope_).empty()) {
      ids_.clear();
      fault_of_registration(
          "sandboxed", "is a Flatpak, whose sandbox keeps it from starting the host by itself");
    } else if (!may_leave_sandbox(subject_, options_)) {
      fault("permission-missing", "may not start programs outside of its sandbox",
            "It may start any then, not the host alone. Run: " + permission_command(subject_));
    }
  }

  std::string registered(registration_scope scope) {
    std::string error;
    return platform::registered_file(chosen_place(subject_, options_, scope, error));
  }

  bool find_manifest() {
    const std::string own = registered(registration_scope::user);
    const std::string shared =
        options_.has_own_folder() ? std::string() : registered(registration_scope::system);
    const bool forbids_own = !policies_.forbids_user_hosts.empty();
    file_ = own.empty() || forbids_own ? shared : own;
    if (file_ == shared && !shared.empty()) scope_ = registration_scope::system;
    if (file_.empty() && forbids_own) {
      fault("policy-forbids-user-hosts",
            policies_.forbids_user_hosts + " lets " + subject_.title +
                " take manifests for all users only, and there is none",
            "As an administrator run: " + install_for_all(own));
    } else if (file_.empty() && !(options_.flatpak && has_faults_)) {
      std::string error;
      const auto place = chosen_place(subject_, options_, registration_scope::user, error);
      fault_of_registration("manifest-missing",
                            "the host isn't registered: there is no manifest " +
                                (place.file.empty() ? std::string(host_name) : place.file));
    }
    if (!own.empty() && !shared.empty() && !forbids_own) look_for_shadow(own, shared);
    return !file_.empty();
  }

  // There is no shared manifest yet, so its ids come from the user's.
  std::string install_for_all(const std::string& own) {
    setup_options named = options_;
    auto& ids = subject_.ids == id_form::chromium ? named.chromium_ids : named.firefox_ids;
    if (ids.empty()) ids = ids_there(own);
    return install_command(subject_, named, registration_scope::system, {}, {});
  }

  std::vector<std::string> ids_there(const std::string& file) {
    std::string text, error;
    if (!platform::read_file(file, max_manifest_size, text, error)) return {};
    const auto found = parse_manifest(text, subject_.ids, error);
    return found.has_value() ? allowed_ids(*found, subject_.ids) : std::vector<std::string>();
  }

  void look_for_shadow(const std::string& own, const std::string& shared) {
    std::string own_text, shared_text, ignored;
    const bool readable = platform::read_file(own, max_manifest_size, own_text, ignored) &&
                          platform::read_file(shared, max_manifest_size, shared_text, ignored);
    if (readable && own_text == shared_text) return;
    warning("system-manifest-hidden",
            own + " hides " + shared + ", which all users share and which says something else",
            "If the shared one is meant, run: " +
                command_for("remove", subject_, options_, registration_scope::user) + " --force");
  }

  std::optional<host_start> read_manifest() {
    std::string text, error;
    if (!platform::read_file(file_, max_manifest_size, text, error)) {
      fault_of_registration("manifest-unreadable", error);
      return std::nullopt;
    }
    const auto found = parse_manifest(text, subject_.ids, error);
    if (!found.has_value()) {
      fault_of_registration("manifest-not-json",
                            file_ + " is no JSON object that the browser could read: " + error);
      return std::nullopt;
    }
    ids_ = allowed_ids(*found, subject_.ids);
    const std::string named = found->path.value_or("");
    const std::string path = platform::host_of_manifest(file_, named);
    host_ = path.empty() ? path : host_behind(path);
    for (const manifest_fault& each : faults_of(*found, subject_.ids)) {
      fault_of_registration(each.id, file_ + ' ' + each.text);
    }
    look_at_extensions(*found);
    if (path.empty()) {
      fault_of_registration("path-relative",
                            file_ + " names the host by \"" + named + "\", no absolute path");
      return std::nullopt;
    }
    if (!has_faults_) say_good();
    return start_of(path);
  }

  // The advice is for people whose extension isn't among those.
  void say_good() {
    out_.add({subject_.title, severity::good, "manifest-good",
              file_ + " is as it should be and lets in " + enumeration(ids_),
              options_.ids(subject_.ids).empty()
                  ? "If yours has another id, run: " +
                        command_for("install", subject_, options_, scope_) +
                        " --add-extension-id " + id_to_fill_in +
                        (host_to_keep().empty() ? "" : " --host " + shell_word(host_))
                  : std::string()});
  }

  host_start start_of(const std::string& path) {
    host_start start{subject_.title, host_, file_, {}, {}, !has_faults_};
    const std::string caller = ids_.empty() ? std::string() : origin_of(ids_.front(), subject_.ids);
    if (subject_.ids == id_form::firefox) start.arguments.push_back(file_);
    start.arguments.push_back(caller);
    if (path != host_ && !platform::look_at(path).executable) {
      fault_of_registration("host-not-executable", path + " can't be run by this user");
      start.is_manifest_good = false;
    }
    start.install = install_command(subject_, options_, scope_, ids_, {});
    if (!platform::look_at(host_).executable) add_repair_of_host();
    return start;
  }

  void add_repair_of_host() {
    setup_options again = options_;
    again.browsers = {&subject_};
    again.system = scope_ == registration_scope::system;
    again.keep_ids = again.force = true;
    again.dry_run = false;
    if (ids_.empty() || host_ == own_host_) return;
    repairs_.add({subject_.title, "run " + install_command(subject_, options_, scope_, ids_, {}),
                  [again, host = own_host_](report& out) { install(again, host, host, out); }});
  }

  void look_at_extensions(const manifest& found) {
    for (const std::string& origin : found.allowed.value_or(std::vector<std::string>())) {
      if (!is_origin(origin, subject_.ids) || !id_of_origin(origin, subject_.ids).empty()) continue;
      warning("origin-useless", file_ + " lists \"" + origin + "\", which no extension has",
              "Look up your extension's id on the browser's page of extensions.");
    }
    for (const std::string& id : options_.ids(subject_.ids)) {
      const bool has_any = !ids_.empty();
      if (!has_any || std::find(ids_.begin(), ids_.end(), id) != ids_.end()) continue;
      fault_of_registration("origin-absent", file_ + " doesn't let the extension " + id +
                                                 " start the host, but " + enumeration(ids_));
    }
    const auto& given = options_.ids(subject_.ids);
    for (const std::string& id : given.empty() ? ids_ : given) look_at_extension_policy(id);
  }

  void look_at_extension_policy(const std::string& id) {
    const std::string where = extension_blocked(subject_, options_, id);
    if (where.empty()) return;
    fault("policy-blocks-extension", where + " blocks the extension " + id,
          "Ask your administrator to allow it in the policy ExtensionSettings.");
  }

  const browser& subject_;
  setup_options options_;
  const std::string& own_host_;
  report& out_;
  repair_list& repairs_;
  policy_findings policies_;
  registration_scope scope_ = registration_scope::user;
  std::string file_;
  std::string host_;
  std::vector<std::string> ids_;
  bool has_faults_ = false;
};

}  // namespace

void examine(const setup_options& options, const std::string& own_host, report& out,
             repair_list& repairs) {
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) {
    out.add({"", severity::fault, "no-browser", "no browser was found on this system",
             "Name yours with --browser."});
  }
  std::set<std::string> examined;
  for (const browser* const each : browsers) {
    const auto start = browser_examination(*each, options, own_host, out, repairs).run();
    if (!start.has_value() || !examined.insert(start->path).second) continue;
    examine_host(*start, out, repairs);
  }
}
