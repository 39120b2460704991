// The store that the development agent keeps in memory: logins by origin, settings, and the lock.
// Used by one thread at a time.
#pragma once

#include <cstddef>
#include <map>

#include "agent/origin.h"
#include "messages/settings.h"
#include "platform/wide.h"

struct login {
  wide_string user;  // may be empty
  wide_string password;
  bool subdomains = false;  // also for the hosts below its own
};

// What pages submit is kept until the process ends, so it is limited.
constexpr std::size_t most_logins = 1000;
constexpr std::size_t longest_login_text = 1024;  // UTF-16 units

class coffer {
 public:
  // The settings that differ from the defaults.
  CfSettings settings;

  // Whether to report on standard error what becomes of each input of a page.
  bool explain = false;

  bool locked() const { return locked_; }
  void lock() { locked_ = true; }
  void unlock() { locked_ = false; }

  // The login for the address: that of its own origin, or of the nearest host above it that shares
  // its login with subdomains. Null if there is none, and for every address while the coffer is
  // locked.
  const login* find(wide_view address) const;

  // True if there is a login of exactly this origin.
  bool has(const origin& o) const { return logins_.contains(o); }

  // Makes `entry` the one login of the origin. False, with nothing changed, while the coffer is
  // locked, for a login without a password, and beyond the limits.
  bool store(const origin& o, const login& entry);

  // Keeps what was typed into a page. Without a user name it is a new password for the user of the
  // page's login. Also false for an address without an origin.
  bool keep_typed(wide_view address, login typed);

 private:
  const login* find_on(const origin& o) const;

  std::map<origin, login> logins_;
  bool locked_ = false;
};
