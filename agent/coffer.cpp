#include "agent/coffer.h"

const login* coffer::find(wide_view address) const {
  std::optional<origin> o = origin_of(address);
  if (locked_ || !o) return nullptr;
  if (const login* const own = find_on(*o)) return own;
  while (!(o->host = parent_of(o->host)).empty()) {
    const login* const above = find_on(*o);
    if (above != nullptr && above->subdomains) return above;
  }
  return nullptr;
}

const login* coffer::find_on(const origin& o) const {
  auto found = logins_.find(o);
  if (found == logins_.end()) found = logins_.find({o.scheme, o.host, any_port});
  return found == logins_.end() ? nullptr : &found->second;
}

bool coffer::store(const origin& o, const login& entry) {
  if (locked_ || entry.password.empty()) return false;
  if (entry.user.size() > longest_login_text || entry.password.size() > longest_login_text) {
    return false;
  }
  if (logins_.size() >= most_logins && !has(o)) return false;
  logins_[o] = entry;
  return true;
}

bool coffer::keep_typed(wide_view address, login typed) {
  const std::optional<origin> o = origin_of(address);
  if (!o) return false;
  if (const login* const known = find(address); known != nullptr && typed.user.empty()) {
    typed.user = known->user;
  }
  // What was typed on one host is for that host, unless its login was shared before.
  const auto own = logins_.find(*o);
  typed.subdomains = own != logins_.end() && own->second.subdomains;
  return store(*o, typed);
}
