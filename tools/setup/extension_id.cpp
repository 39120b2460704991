#include "tools/setup/extension_id.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view scheme = "chrome-extension://";
constexpr std::size_t chromium_id_size = 32;
constexpr std::size_t max_id_size = 255;

bool is_alphanumeric(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_hexadecimal(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool is_name_part(char c) { return is_alphanumeric(c) || c == '.' || c == '_' || c == '-'; }

bool is_guid(std::string_view id) {
  constexpr std::string_view pattern = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  return id.size() == pattern.size() &&
         std::equal(id.begin(), id.end(), pattern.begin(),
                    [](char c, char p) { return p == 'x' ? is_hexadecimal(c) : c == p; });
}

bool is_address(std::string_view id) {
  const std::size_t at = id.find('@');
  if (at == std::string_view::npos || id.size() > max_id_size) return false;
  const std::string_view domain = id.substr(at + 1);
  return !domain.empty() &&
         std::all_of(id.begin(), id.begin() + static_cast<std::ptrdiff_t>(at), is_name_part) &&
         std::all_of(domain.begin(), domain.end(), is_name_part);
}

bool is_letters(std::string_view id) {
  return std::all_of(id.begin(), id.end(), [](char c) { return c >= 'a' && c <= 'p'; });
}

// The part between the scheme and the path of a pattern that Chromium accepts; empty for others.
// Chromium ignores the path, and doesn't check whether this part is an id.
std::string host_of_pattern(std::string_view pattern) {
  constexpr std::string_view any_scheme = "*://";
  constexpr std::string_view no_host = "*<>[]\\^|@#?:";
  for (const std::string_view start : {scheme, any_scheme}) {
    if (!pattern.starts_with(start)) continue;
    pattern.remove_prefix(start.size());
    std::string_view host = pattern.substr(0, pattern.find('/'));
    if (host.size() == pattern.size()) return {};
    if (host.ends_with(":*")) host.remove_suffix(2);
    const bool good = std::none_of(host.begin(), host.end(), [no_host](char c) {
      return static_cast<unsigned char>(c) < ' ' || no_host.find(c) != std::string_view::npos;
    });
    return good ? std::string(host) : std::string();
  }
  return {};
}

}  // namespace

std::optional<id_form> form_of_id(const std::string& id, std::string& error) {
  if (is_guid(id) || is_address(id)) return id_form::firefox;
  if (id.size() == chromium_id_size && is_letters(id)) return id_form::chromium;
  error = '"' + id + "\" is no extension id: ";
  if (id.size() == chromium_id_size) {
    error += "its letters go beyond a to p";
  } else if (is_letters(id)) {
    error += "it has " + std::to_string(id.size()) + " letters, not 32";
  } else {
    error += "they are 32 letters from a to p, or for Firefox name@domain or a {GUID}";
  }
  return std::nullopt;
}

std::string origin_of(const std::string& id, id_form form) {
  return form == id_form::chromium ? std::string(scheme) + id + '/' : id;
}

bool is_origin(const std::string& origin, id_form form) {
  std::string ignored;
  if (form == id_form::firefox) return form_of_id(origin, ignored) == form;
  return !host_of_pattern(origin).empty();
}

std::string id_of_origin(const std::string& origin, id_form form) {
  std::string id = origin, ignored;
  if (form == id_form::chromium) {
    id = origin.starts_with(scheme) ? host_of_pattern(origin) : std::string();
    for (char& c : id) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (id.ends_with('.')) id.pop_back();
  }
  return form_of_id(id, ignored) == form ? id : std::string();
}
