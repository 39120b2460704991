#include "tools/setup/flatpak.h"

#include <algorithm>
#include <string_view>

#include "platform/files.h"

namespace {

constexpr char script_start[] =
    "#!/bin/sh\n"
    "# Starts the host of the coffer password manager outside of the sandbox.\n"
    "exec flatpak-spawn --host '";
constexpr char script_end[] = "' \"$@\"\n";
constexpr char permission[] = "org.freedesktop.Flatpak=talk";

// Longer than any such script or settings file.
constexpr std::size_t max_size = 1 << 16;

std::string script_text(const std::string& path) {
  std::string text, ignored;
  return platform::read_file(path, max_size, text, ignored) ? text : std::string();
}

bool grants(const std::string& path) {
  const std::string text = script_text(path);
  std::string_view rest = text;
  bool in_session = false;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = rest.substr(0, end);
    if (line.starts_with('[')) in_session = line == "[Session Bus Policy]";
    if (in_session && line == permission) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

}  // namespace

std::string flatpak_script_path(const browser& about, const setup_options& options) {
  return platform::path_in_system(std::string("~/.var/app/") + about.places.flatpak + "/cfhost",
                                  options.root);
}

std::string flatpak_script(const std::string& host) {
  std::string text = script_start;
  for (const char c : host) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + script_end;
}

std::string host_behind(const std::string& path) {
  std::string text = script_text(path);
  if (!text.starts_with(script_start) || !text.ends_with(script_end)) return path;
  text = text.substr(sizeof script_start - 1,
                     text.size() - (sizeof script_start - 1) - (sizeof script_end - 1));
  for (std::size_t at = 0; (at = text.find("'\\''", at)) != std::string::npos; ++at) {
    text.erase(at + 1, 3);
  }
  return text;
}

bool may_leave_sandbox(const browser& about, const setup_options& options) {
  const std::string name = about.places.flatpak;
  const std::string files[] = {"~/.local/share/flatpak/overrides/" + name,
                               "~/.local/share/flatpak/overrides/global",
                               "/var/lib/flatpak/overrides/" + name,
                               "/var/lib/flatpak/overrides/global",
                               "~/.local/share/flatpak/app/" + name + "/current/active/metadata",
                               "/var/lib/flatpak/app/" + name + "/current/active/metadata"};
  return std::any_of(std::begin(files), std::end(files), [&options](const std::string& file) {
    return grants(platform::path_in_system(file, options.root));
  });
}

std::string permission_command(const browser& about) {
  return std::string("flatpak override --user --talk-name=org.freedesktop.Flatpak ") +
         about.places.flatpak;
}
