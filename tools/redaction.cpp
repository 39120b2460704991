#include "tools/redaction.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

using names = const std::string_view[];

// In lower case and with hyphens. No member in use today carries items of the store.
constexpr names secret_names = {"value",    "dbvalue",          "cf-value",
                                "settings", "default-settings", "coffer-set-settings",
                                "dbitems"};
constexpr names address_names = {"source", "before-url", "after-url", "url", "navigate-login"};
constexpr names passing_names = {"agpid", "uuid"};

// Properties have hyphens where a request's keys have underscores. Case is ignored, so that a
// misspelt secret is hidden too.
char plain(char c) {
  if (c == '_') return '-';
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

template <std::size_t Count>
bool is_among(const std::string_view (&list)[Count], const char* name) {
  if (name == nullptr) return false;
  const std::string_view given = name;
  return std::any_of(std::begin(list), std::end(list), [given](std::string_view each) {
    return std::equal(each.begin(), each.end(), given.begin(), given.end(),
                      [](char a, char b) { return a == plain(b); });
  });
}

}  // namespace

bool is_secret_name(const char* name) { return is_among(secret_names, name); }
bool is_address_name(const char* name) { return is_among(address_names, name); }
bool is_passing_name(const char* name) { return is_among(passing_names, name); }

std::string hidden_mark(std::size_t length, bool level) {
  if (length == 0) return {};
  return level ? "<hidden>" : "<hidden " + std::to_string(length) + '>';
}

std::string bare_address(const std::string& text, bool is_address) {
  const std::size_t scheme = text.find("://");
  const bool has_scheme = scheme != std::string::npos && text.find_first_of("/?# \t") > scheme;
  if (!is_address && !has_scheme) return text;
  std::string bare = text.substr(0, text.find_first_of("?#"));
  if (!has_scheme) return bare;
  const std::size_t host = scheme + 3;
  const std::size_t user_end = bare.substr(0, bare.find('/', host)).rfind('@');
  return user_end == std::string::npos || user_end < host ? bare
                                                          : bare.erase(host, user_end + 1 - host);
}
