#include "tools/setup/policies.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "json/parser.h"
#include "platform/files.h"
#include "platform/policies.h"
#include "tools/setup/lenient_json.h"
#include "tools/setup/manifest.h"

namespace {

using platform::registration_scope;

constexpr std::size_t max_policy_size = std::size_t{1} << 20;

// A value of a policy, and where it was decided.
struct decision {
  std::vector<std::string> values;
  std::string where;

  bool has(std::string_view value) const {
    return std::find(values.begin(), values.end(), value) != values.end();
  }
};

// A parsed text; the tree lives as long as this object.
class document {
 public:
  document(const std::string& text, const json_leniency& leniency)
      : text_(to_strict_json(text, leniency)) {
    const char *position = nullptr, *description = nullptr;
    if (!text_.fault.has_value()) {
      root_ = json_parse(text_.text.data(), position, description, nodes_);
    }
  }

  const json_node* root() const { return root_; }

 private:
  strict_json text_;
  scoped_node_arena nodes_;
  const json_node* root_ = nullptr;
};

const json_node* member(const json_node* of, std::string_view name) {
  const json_node* found = nullptr;
  if (of == nullptr || of->kind != kind_object) return nullptr;
  for (const json_node* child = of->first_child; child != nullptr; child = child->next_sibling) {
    if (child->name != nullptr && child->name == name) found = child;
  }
  return found;
}

std::string content(const std::string& path) {
  std::string text, ignored;
  return platform::read_file(path, max_policy_size, text, ignored) ? text : std::string();
}

// The values of a policy of the kind that Chromium expects; nothing for another kind, which
// Chromium ignores.
std::optional<std::vector<std::string>> values_of(const json_node& policy, json_kind kind) {
  if (policy.kind != kind) return std::nullopt;
  if (kind == kind_bool) return std::vector<std::string>{policy.value.boolean != 0 ? "1" : "0"};
  std::vector<std::string> values;
  for (const json_node* each = policy.first_child; each != nullptr; each = each->next_sibling) {
    if (each->kind == kind_string) values.emplace_back(each->value.string);
  }
  return values;
}

// The last file with the policy decides, and the machine overrides the user.
decision decision_on(const char* policy, json_kind kind, const browser& about,
                     const setup_options& options) {
  decision found;
  for (const std::string& file : platform::policy_files(about.places, options.root)) {
    const document policies(content(file), chromium_policy);
    const json_node* const value = member(policies.root(), policy);
    const auto values = value == nullptr ? std::nullopt : values_of(*value, kind);
    if (values.has_value()) found = {*values, file};
  }
  for (const auto scope : {registration_scope::user, registration_scope::system}) {
    const auto value = platform::policy_in_registry(about.places, scope, policy);
    if (value.has_value()) found = {value->values, value->key};
  }
  return found;
}

// Firefox reads only the first of its files that exists.
decision extension_settings(const browser& about, const setup_options& options) {
  for (const auto scope : {registration_scope::system, registration_scope::user}) {
    const auto value = platform::policy_in_registry(about.places, scope, "ExtensionSettings");
    if (value.has_value()) return {value->values, value->key};
  }
  for (const std::string& file : platform::policy_files(about.places, options.root)) {
    if (file.ends_with("/policies.json")) return {{content(file)}, file};
  }
  return {};
}

bool is_blocked(const json_node* settings, const std::string& id) {
  const json_node* const own = member(settings, id);
  const json_node* const mode =
      member(own != nullptr ? own : member(settings, "*"), "installation_mode");
  return mode != nullptr && mode->kind == kind_string &&
         std::string_view(mode->value.string) == "blocked";
}

}  // namespace

policy_findings host_policies(const browser& about, const setup_options& options) {
  policy_findings found;
  if (about.ids != id_form::chromium) return found;
  const decision blocked = decision_on("NativeMessagingBlocklist", kind_array, about, options);
  const decision allowed = decision_on("NativeMessagingAllowlist", kind_array, about, options);
  const decision users = decision_on("NativeMessagingUserLevelHosts", kind_bool, about, options);
  if ((blocked.has(host_name) || blocked.has("*")) && !allowed.has(host_name)) {
    found.blocks_host = blocked.where;
  }
  if (users.has("0")) found.forbids_user_hosts = users.where;
  return found;
}

std::string extension_blocked(const browser& about, const setup_options& options,
                              const std::string& id) {
  if (about.ids != id_form::firefox) return {};
  const decision settings = extension_settings(about, options);
  if (settings.values.empty()) return {};
  const document policies(settings.values.front(), firefox_json);
  // The registry has this policy alone, a file has all of them.
  const json_node* const all = member(policies.root(), "policies");
  const json_node* const own = all == nullptr ? policies.root() : member(all, "ExtensionSettings");
  return is_blocked(own, id) ? settings.where : std::string();
}
