#include "tools/tap_settings.h"

#include <string_view>

#include "json/parser.h"
#include "json/writer.h"
#include "platform/files.h"

namespace {

constexpr std::size_t max_file_size = 1 << 16;

// A member of the wrong kind or out of range is reported by its name.
bool take_member(const json_node& member, tap_settings& settings, std::string& error) {
  const std::string_view name = member.name == nullptr ? "" : member.name;
  const json_value& value = member.value;
  if (name == "host" && member.kind == kind_string) {
    settings.host = value.string;
  } else if (name == "with_values" && member.kind == kind_bool) {
    settings.with_values = value.boolean != 0;
  } else if (name == "limit_mib" && member.kind == kind_int && value.integer >= 1 &&
             static_cast<std::size_t>(value.integer) <= max_capture_mib) {
    settings.limit_mib = static_cast<std::size_t>(value.integer);
  } else {
    error = "\"" + std::string(name) + "\" isn't known or has a wrong value";
    return false;
  }
  return true;
}

}  // namespace

bool read_tap_settings(const std::string& folder, tap_settings& settings, std::string& error) {
  const std::string path = platform::path_below(folder, tap_settings_name);
  std::string text;
  if (!platform::read_file(path, max_file_size, text, error)) return false;
  scoped_node_arena nodes;
  const char* position = nullptr;
  const char* description = "it is empty";
  const json_node* const root = json_parse(text.data(), position, description, nodes);
  error = path + ": ";
  if (root == nullptr) {
    error += description;
    return false;
  }
  std::string fault;
  for (const json_node* child = root->first_child; child != nullptr; child = child->next_sibling) {
    if (!take_member(*child, settings, fault)) {
      error += fault;
      return false;
    }
  }
  error.clear();
  return true;
}

std::string tap_settings_text(const tap_settings& settings) {
  pair_stream members;
  json_put_string(members, "host", settings.host);
  members << (settings.with_values ? R"("with_values":true,)" : R"("with_values":false,)");
  json_put_int(members, "limit_mib", static_cast<std::int32_t>(settings.limit_mib));
  return json_close_object(members) + '\n';
}

std::string recorded_host(const std::string& program) {
  tap_settings settings;
  std::string ignored;
  if (!read_tap_settings(platform::folder_of(program), settings, ignored)) return program;
  const bool is_tap = program == platform::path_below(platform::folder_of(program),
                                                      platform::program_file_name("cftap"));
  return is_tap && !settings.host.empty() ? settings.host : program;
}
