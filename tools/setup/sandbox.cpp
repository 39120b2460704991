#include "tools/setup/sandbox.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/files.h"

namespace {

enum class sandbox_kind { none, flatpak, snap };

// A helper that starts hosts for a browser in a sandbox, using the manifests outside it.
struct helper_findings {
  bool is_known = false;       // the browser can use one
  bool is_there = false;       // on this system
  const char* package = "";    // the one that contains it
  const char* condition = "";  // what else it needs, for people
  std::string forbidden;       // the file that turns its use off, if any
};

constexpr std::size_t max_program_size = std::size_t{16} << 20;

bool holds(const std::string& path, std::string_view part) {
  std::string text, ignored;
  return platform::read_file(path, max_program_size, text, ignored) &&
         text.find(part) != std::string::npos;
}

// Distributions that ship Firefox as a Snap add the interface to their portal; its program then
// contains the interface's name.
bool has_portal(const setup_options& options) {
  for (const char* const path :
       {"/usr/libexec/xdg-desktop-portal", "/usr/lib/xdg-desktop-portal"}) {
    if (holds(platform::path_in_system(path, options.root),
              "org.freedesktop.portal.WebExtensions")) {
      return true;
    }
  }
  return false;
}

bool has_proxy(const setup_options& options) {
  constexpr char service[] =
      "/usr/share/dbus-1/services/org.freedesktop.NativeMessagingProxy.service";
  return platform::look_at(platform::path_in_system(service, options.root)).exists;
}

// The file of a profile in which the user has turned off the use of the helper.
std::string find_setting(const std::string& profiles) {
  constexpr std::string_view off = "\"widget.use-xdg-desktop-portal.native-messaging\", 0)";
  std::error_code error;
  for (std::filesystem::directory_iterator at(profiles, error), end; !error && at != end;
       at.increment(error)) {
    for (const char* const name : {"prefs.js", "user.js"}) {
      std::string file = (at->path() / name).string();
      if (holds(file, off)) return file;
    }
  }
  return {};
}

helper_findings find_helper(const browser& about, sandbox_kind kind, const setup_options& options) {
  helper_findings found;
  if (std::string_view(about.name) != "firefox" || kind == sandbox_kind::none) return found;
  found.is_known = true;
  if (kind == sandbox_kind::snap) {
    found.is_there = has_portal(options);
    found.package =
        "a package xdg-desktop-portal with the interface WebExtensions, as Ubuntu has it";
    found.condition = "Firefox asks once whether the extension may start it";
    found.forbidden = find_setting(
        platform::path_in_system("~/snap/firefox/common/.mozilla/firefox", options.root));
  } else {
    found.is_there = has_proxy(options) || has_portal(options);
    found.package = "the package xdg-native-messaging-proxy";
    found.condition = "that takes Firefox 157 or later";
    found.forbidden = find_setting(
        platform::path_in_system("~/.var/app/org.mozilla.firefox/.mozilla/firefox", options.root));
  }
  return found;
}

report_entry fault(const browser& about, const char* id, std::string text, std::string advice) {
  return {about.title, severity::fault, id, std::move(text), std::move(advice)};
}

report_entry judge_helper(const browser& about, const helper_findings& helper,
                          const std::string& text) {
  if (!helper.is_there) {
    return fault(about, "sandbox-helper-missing", text + " and needs help to start the host",
                 std::string("Install ") + helper.package + '.');
  }
  if (!helper.forbidden.empty()) {
    return fault(about, "sandbox-helper-off",
                 helper.forbidden + " turns off what starts the host for a browser in a sandbox",
                 "Set widget.use-xdg-desktop-portal.native-messaging to 2 in about:config.");
  }
  return {about.title,
          severity::note,
          "sandbox-helper",
          text + "; " + helper.package + " starts the host for it (" + helper.condition + ')',
          {}};
}

}  // namespace

sandbox_verdict judge_sandbox(const browser& about, const setup_options& options) {
  if (!options.user_data.empty() || !options.manifest_dir.empty()) return {};
  if (options.flatpak) return {std::nullopt, true};
  const auto traces = platform::traces_of(about.places, options.root);
  const sandbox_kind kind = traces.flatpak ? sandbox_kind::flatpak
                            : traces.snap  ? sandbox_kind::snap
                                           : sandbox_kind::none;
  if (kind == sandbox_kind::none) return {};
  const std::string text =
      std::string("is installed as a ") + (traces.flatpak ? "Flatpak" : "Snap");
  if (traces.installed) {
    return {report_entry{about.title, severity::warning, "sandboxed",
                         text + " too, whose sandbox keeps it from starting the host",
                         "Start the other one."}};
  }
  const helper_findings helper = find_helper(about, kind, options);
  if (helper.is_known && (helper.is_there || kind == sandbox_kind::snap)) {
    return {judge_helper(about, helper, text)};
  }
  if (kind == sandbox_kind::flatpak) return {std::nullopt, true};
  return {fault(about, "sandboxed", text + ", whose sandbox keeps it from starting the host",
                "Use the package of your distribution or of the browser's maker.")};
}
