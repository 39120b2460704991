#include "agent/public_suffix.h"

#include <algorithm>
#include <array>

namespace {

// Below these, and below names of one label, anybody can get a name.
constexpr std::array public_suffixes = {
    "ac.jp",         "ac.uk",     "appspot.com", "azurewebsites.net",
    "blogspot.com",  "co.at",     "co.id",       "co.il",
    "co.in",         "co.jp",     "co.ke",       "co.kr",
    "co.nz",         "co.th",     "co.uk",       "co.za",
    "com.ar",        "com.au",    "com.br",      "com.cn",
    "com.co",        "com.hk",    "com.mx",      "com.my",
    "com.pl",        "com.sg",    "com.tr",      "com.tw",
    "com.ua",        "edu.au",    "edu.cn",      "firebaseapp.com",
    "github.io",     "gitlab.io", "go.jp",       "gob.mx",
    "gov.au",        "gov.br",    "gov.cn",      "gov.uk",
    "herokuapp.com", "ltd.uk",    "me.uk",       "ne.jp",
    "net.au",        "net.br",    "net.cn",      "net.uk",
    "netlify.app",   "nhs.uk",    "or.jp",       "or.kr",
    "org.au",        "org.br",    "org.cn",      "org.nz",
    "org.pl",        "org.uk",    "pages.dev",   "plc.uk",
    "vercel.app",    "web.app",   "workers.dev", "wordpress.com"};

bool is_in_numbers(const std::string& host) {
  if (host.front() == '[') return true;
  const std::size_t last = host.rfind('.') + 1;
  return host.find_first_not_of("0123456789", last) == std::string::npos;
}

}  // namespace

bool is_public_suffix(const std::string& host) {
  const std::string name = host.substr(0, host.find_last_not_of('.') + 1);
  return name.find('.') == std::string::npos || is_in_numbers(name) ||
         std::find(public_suffixes.begin(), public_suffixes.end(), name) != public_suffixes.end();
}
