// The store that the development agent keeps in memory: logins by site, settings, and the lock.
// Used by one thread at a time.
#pragma once

#include <cstddef>
#include <map>

#include "messages/settings.h"
#include "platform/wide.h"

struct login {
  wide_string user;  // may be empty
  wide_string password;
};

// What pages submit is kept for as long as the process lives, so it is limited.
constexpr std::size_t most_logins = 1000;
constexpr std::size_t longest_login_text = 1024;  // UTF-16 units

// The site that an address belongs to: its host in small letters, without user, port and scheme; or
// the text up to the first '/', '\', '?' or '#' where there is no "://". Sites match if they are
// equal, so a subdomain is a site of its own.
wide_string site_of(wide_view address);

class coffer {
 public:
  // What differs from the defaults.
  CfSettings settings;

  bool locked() const { return locked_; }
  void lock() { locked_ = true; }
  void unlock() { locked_ = false; }

  // The login of the address's site. Null if there is none, and for every address while locked.
  const login* find(wide_view address) const;

  // Makes `entry` the one login of the address's site. False, with nothing changed, while locked,
  // for an address without a site, a login without a password, and beyond the limits.
  bool store(wide_view address, const login& entry);

 private:
  std::map<wide_string, login> logins_;
  bool locked_ = false;
};
