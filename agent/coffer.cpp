#include "agent/coffer.h"

namespace {

// An address in brackets has colons of its own.
wide_view without_port(wide_view host) {
  if (!host.empty() && host.front() == u'[') return host.substr(0, host.find(u']') + 1);
  return host.substr(0, host.find(u':'));
}

wide_char small_letter(wide_char c) {
  return c >= u'A' && c <= u'Z' ? static_cast<wide_char>(c - u'A' + u'a') : c;
}

}  // namespace

wide_string site_of(wide_view address) {
  constexpr wide_view scheme_end = u"://";
  const std::size_t scheme = address.find(scheme_end);
  if (scheme != wide_view::npos) address.remove_prefix(scheme + scheme_end.size());
  address = address.substr(0, address.find_first_of(u"/\\?#"));
  // Adding 1 turns "not found" into 0.
  address.remove_prefix(address.rfind(u'@') + 1);

  wide_string site(without_port(address));
  for (wide_char& c : site) c = small_letter(c);
  return site;
}

const login* coffer::find(wide_view address) const {
  if (locked_) return nullptr;
  const auto found = logins_.find(site_of(address));
  return found == logins_.end() ? nullptr : &found->second;
}

bool coffer::store(wide_view address, const login& entry) {
  const wide_string site = site_of(address);
  if (locked_ || site.empty() || entry.password.empty()) return false;
  for (const wide_view text : {wide_view(site), wide_view(entry.user), wide_view(entry.password)}) {
    if (text.size() > longest_login_text) return false;
  }
  if (logins_.size() >= most_logins && !logins_.contains(site)) return false;
  logins_[site] = entry;
  return true;
}
