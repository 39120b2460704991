#include "tools/setup/commands.h"

#include <algorithm>

namespace {

bool is_plain(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         std::string_view("_-./:@,+=\\").find(c) != std::string_view::npos;
}

}  // namespace

std::string shell_word(const std::string& text) {
  if (!text.empty() && std::all_of(text.begin(), text.end(), is_plain)) return text;
  std::string word = "\"";
  for (const char c : text) {
    if (std::string_view("\"$`").find(c) != std::string_view::npos) word += '\\';
    word += c;
  }
  return word + '"';
}

std::string command_for(const char* command, const browser& about, const setup_options& options,
                        platform::registration_scope scope) {
  std::string text = std::string("cfsetup ") + command;
  const auto add = [&text](const char* name, const std::string& value) {
    if (!value.empty()) text.append(" ").append(name).append(" ").append(shell_word(value));
  };
  add("--browser", about.name);
  add("--manifest-dir", options.manifest_dir);
  if (!options.manifest_dir.empty()) {
    add("--form", about.ids == id_form::chromium ? "chromium" : "firefox");
  }
  add("--user-data-dir", options.user_data);
  add("--root", options.root);
  if (options.flatpak) text += " --flatpak";
  if (scope == platform::registration_scope::system) text += " --system";
  return text;
}

std::string install_command(const browser& about, const setup_options& options,
                            platform::registration_scope scope,
                            const std::vector<std::string>& ids_there, const std::string& host) {
  std::string text = command_for("install", about, options, scope);
  const auto& ids = options.ids(about.ids);
  for (const std::string& id : ids) {
    const char* const option = ids_there.empty() ? " --extension-id " : " --add-extension-id ";
    text.append(option).append(shell_word(id));
  }
  if (ids.empty()) {
    text += ids_there.empty() ? std::string(" --extension-id ") + id_to_fill_in : " --keep-ids";
  }
  if (!host.empty()) text += " --host " + shell_word(host);
  return text + " --force";
}
