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
  if (!origin.starts_with(scheme) || !origin.ends_with('/')) return false;
  const std::string id = origin.substr(scheme.size(), origin.size() - scheme.size() - 1);
  return form_of_id(id, ignored) == form;
}
