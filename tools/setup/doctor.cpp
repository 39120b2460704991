#include "tools/setup/doctor.h"

#include <algorithm>
#include <optional>
#include <set>

#include "platform/files.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/host_examination.h"
#include "tools/setup/manifest.h"
#include "tools/setup/registration.h"

namespace {

using platform::registration_scope;

constexpr char install_again[] = "Run cfsetup install with your extension's id";

class browser_examination {
 public:
  browser_examination(const browser& subject, const setup_options& options, report& out)
      : subject_(subject), options_(options), out_(out) {}

  // The manifest that the browser takes, as far as it is good enough to start a host.
  std::optional<manifest> run() {
    look_for_sandbox();
    if (!find_manifest()) return std::nullopt;
    return read_manifest();
  }

  // What the browser passes to the host behind its name.
  std::vector<std::string> host_arguments(const manifest& found) const {
    const std::string caller = found.allowed.empty() ? std::string() : found.allowed.front();
    if (subject_.ids == id_form::firefox) return {file_, caller};
    return {caller};
  }

 private:
  void fault(const char* id, std::string text, std::string advice) {
    has_faults_ = true;
    out_.add({subject_.title, severity::fault, id, std::move(text), std::move(advice)});
  }
  void warning(const char* id, std::string text, std::string advice) {
    out_.add({subject_.title, severity::warning, id, std::move(text), std::move(advice)});
  }

  // A browser in a sandbox sees neither the manifest nor the host. Where there is another one too,
  // nobody knows which of the two is meant.
  void look_for_sandbox() {
    const auto traces = platform::find_browser(subject_.places, options_.root);
    if (!traces.flatpak && !traces.snap) return;
    const std::string text = std::string(subject_.title) + " is installed as a " +
                             (traces.flatpak ? "Flatpak" : "Snap") +
                             ": its sandbox keeps it from starting programs like the host";
    const char* const advice = "Use the package of your distribution or of the browser's maker.";
    traces.installed ? warning("sandboxed", text, advice) : fault("sandboxed", text, advice);
  }

  std::string registered(registration_scope scope) {
    std::string error;
    return platform::registered_file(chosen_place(subject_, options_, scope, error));
  }

  bool find_manifest() {
    const std::string own = registered(registration_scope::user);
    const std::string shared =
        options_.user_data.empty() ? registered(registration_scope::system) : std::string();
    file_ = own.empty() ? shared : own;
    if (file_.empty()) {
      std::string error;
      const auto place = chosen_place(subject_, options_, registration_scope::user, error);
      fault("manifest-missing",
            "the host isn't registered: there is no manifest " +
                (place.file.empty() ? std::string(host_name) : place.file),
            std::string(install_again) + " and --browser " + subject_.name + '.');
      return false;
    }
    if (!own.empty() && !shared.empty()) look_for_shadow(own, shared);
    return true;
  }

  void look_for_shadow(const std::string& own, const std::string& shared) {
    std::string own_text, shared_text, ignored;
    const bool readable = platform::read_file(own, max_manifest_size, own_text, ignored) &&
                          platform::read_file(shared, max_manifest_size, shared_text, ignored);
    if (readable && own_text == shared_text) return;
    warning("system-manifest-hidden",
            own + " hides " + shared + ", which all users share and which says something else",
            std::string("If the shared one is meant, run cfsetup remove --browser ") +
                subject_.name + '.');
  }

  std::optional<manifest> read_manifest() {
    std::string text, error;
    if (!platform::read_file(file_, max_manifest_size, text, error)) {
      fault("manifest-unreadable", error,
            std::string(install_again) + ", or let this user read the file.");
      return std::nullopt;
    }
    auto found = parse_manifest(std::move(text), subject_.ids, error);
    if (!found.has_value()) {
      fault("manifest-not-json", file_ + " is no JSON object: " + error,
            std::string(install_again) + " and --force.");
      return std::nullopt;
    }
    look_at_members(*found);
    look_at_extensions(*found);
    if (!platform::is_absolute_path(found->path)) {
      fault("path-relative", file_ + " names the host by \"" + found->path + "\", no absolute path",
            std::string(install_again) + " and --force.");
      return std::nullopt;
    }
    if (!has_faults_) {
      out_.add(
          {subject_.title, severity::good, "manifest-good", file_ + " is as it should be", {}});
    }
    return found;
  }

  void look_at_members(const manifest& found) {
    if (found.name != host_name) {
      fault("name-wrong",
            file_ + " is for \"" + found.name + "\", but the extension asks for " + host_name,
            std::string(install_again) + " and --force.");
    }
    if (found.type != "stdio") {
      fault("type-wrong", file_ + " has the type \"" + found.type + "\"; only stdio is known",
            std::string(install_again) + " and --force.");
    }
  }

  bool lets_in(const manifest& found, const std::string& id) {
    const std::string origin = origin_of(id, subject_.ids);
    return std::find(found.allowed.begin(), found.allowed.end(), origin) != found.allowed.end();
  }

  void look_at_extensions(const manifest& found) {
    if (found.allowed.empty()) {
      fault("origin-absent", file_ + " lets no extension start the host",
            std::string(install_again) + '.');
    }
    for (const std::string& origin : found.allowed) {
      if (!is_origin(origin, subject_.ids)) {
        fault("origin-malformed", file_ + " lists \"" + origin + "\", which no extension has",
              std::string(install_again) + ", as the browser's page of extensions shows it.");
      }
    }
    for (const std::string& id : options_.ids(subject_.ids)) {
      if (!lets_in(found, id)) {
        fault("origin-absent", file_ + " doesn't let the extension " + id + " start the host",
              std::string(install_again) + ": the ids given become the whole list.");
      }
    }
  }

  const browser& subject_;
  const setup_options& options_;
  report& out_;
  std::string file_;
  bool has_faults_ = false;
};

}  // namespace

void examine(const setup_options& options, report& out) {
  const auto browsers = chosen_browsers(options);
  if (browsers.empty()) {
    out.add({"", severity::fault, "no-browser", "no browser was found on this system",
             "Name yours with --browser."});
  }
  std::set<std::string> examined;
  for (const browser* const each : browsers) {
    browser_examination examination(*each, options, out);
    const auto found = examination.run();
    if (!found.has_value() || !examined.insert(found->path).second) continue;
    examine_host(each->title, found->path, examination.host_arguments(*found), out);
  }
}
