#include "tools/method_advice.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <vector>

#include "bridge/method_names.h"
#include "json/parser.h"

namespace {

// A longer name isn't a typing error.
constexpr std::size_t max_name_size = 64;

// How many characters have to be inserted, deleted or changed.
std::size_t distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t changed = diagonal + (from[i] != to[j] ? 1 : 0);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, changed});
    }
  }
  return row.back();
}

std::string_view nearest(std::string_view name) {
  return *std::min_element(std::begin(method_names), std::end(method_names),
                           [name](std::string_view one, std::string_view other) {
                             return distance(name, one) < distance(name, other);
                           });
}

std::string known_methods() {
  std::string names;
  for (const std::string_view name : method_names) names.append(names.empty() ? "" : ", ") += name;
  return names;
}

// The last one counts, as for the host.
const char* method_of(const json_node& request) {
  const char* method = nullptr;
  for (const json_node* member = request.first_child; member != nullptr;
       member = member->next_sibling) {
    const bool is_method = member->name != nullptr && std::string_view(member->name) == "method";
    if (is_method && member->kind == kind_string) method = member->value.string;
  }
  return method;
}

}  // namespace

std::string method_advice(std::string request) {
  const char *position = nullptr, *description = nullptr;
  scoped_node_arena nodes;
  const json_node* const root = json_parse(request.data(), position, description, nodes);
  if (root == nullptr) return {};
  const char* const method = method_of(*root);
  if (method == nullptr) return "the request asks for no method; known are " + known_methods();
  const std::string_view name = method;
  const auto end = std::end(method_names);
  if (std::find(std::begin(method_names), end, name) != end) return {};
  const std::string start = "there is no method \"" + std::string(name.substr(0, max_name_size));
  const std::string_view meant = nearest(name.substr(0, max_name_size));
  const bool is_near = distance(name.substr(0, max_name_size), meant) <= meant.size() / 2;
  return start + (is_near ? "\"; is \"" + std::string(meant) + "\" meant?"
                          : "\"; known are " + known_methods());
}
