#include "agent/origin.h"

#include <algorithm>
#include <string_view>

#include "agent/letters.h"
#include "agent/punycode.h"

namespace {

constexpr std::size_t longest_host = 253;
constexpr wide_view scheme_end = u"://";

struct address_parts {
  wide_string scheme;  // in small letters; empty if there was none
  wide_view host;
  wide_view port;  // empty if there was none
};

wide_string in_small_letters(wide_view text) {
  wide_string small(text);
  std::transform(small.begin(), small.end(), small.begin(), small_letter);
  return small;
}

address_parts split(wide_view address) {
  address_parts parts;
  const std::size_t path = address.find_first_of(u"/\\?#");
  const std::size_t scheme = address.find(scheme_end);
  if (scheme != wide_view::npos && scheme < path) {
    parts.scheme = in_small_letters(address.substr(0, scheme));
    address.remove_prefix(scheme + scheme_end.size());
  }
  address = address.substr(0, address.find_first_of(u"/\\?#"));
  // Everything before an '@' is a user. Adding 1 turns "not found" into 0.
  address.remove_prefix(address.rfind(u'@') + 1);
  // An address in brackets has colons of its own.
  const std::size_t colon = address.find(u':', address.find(u']') + 1);
  parts.host = address.substr(0, colon);
  if (colon != wide_view::npos) parts.port = address.substr(colon + 1);
  return parts;
}

// The full stops of Chinese and Japanese input methods are dots too (RFC 3490).
bool is_dot(wide_char c) { return c == u'.' || c == 0x3002 || c == 0xFF0E || c == 0xFF61; }

bool may_be_in_host(wide_char c) {
  const bool sign = c < 0x80 && !(c >= u'a' && c <= u'z') && !(c >= u'0' && c <= u'9');
  return !sign || c == u'-' || c == u'_';
}

bool is_bracketed(wide_view host) {
  return host.size() > 2 && host.front() == u'[' && host.back() == u']' &&
         host.find_first_not_of(u"0123456789abcdef:.", 1) == host.size() - 1;
}

// Empty if it can't be a host.
std::string ascii_host(wide_view written) {
  const wide_string host = in_small_letters(written.substr(0, longest_host + 1));
  if (is_bracketed(host)) return {host.begin(), host.end()};
  std::string ascii;
  for (auto start = host.begin();;) {
    const auto end = std::find_if(start, host.end(), is_dot);
    if (!std::all_of(start, end, may_be_in_host)) return {};
    if (!append_ascii_label(ascii, wide_view(start, end))) return {};
    if (end == host.end()) break;
    ascii += '.';
    start = end + 1;
    if (start == host.end()) break;  // a dot after the last label is part of the name
  }
  return ascii.size() <= longest_host ? ascii : std::string();
}

// `fallback` if no port is written; nothing if it isn't a port.
std::optional<std::uint16_t> port_of(wide_view digits, std::uint16_t fallback) {
  if (digits.empty()) return fallback;
  std::uint32_t port = 0;
  for (const wide_char c : digits) {
    if (c < u'0' || c > u'9') return std::nullopt;
    port = port * 10 + (c - u'0');
    if (port > 0xFFFF) return std::nullopt;
  }
  if (port == any_port) return std::nullopt;
  return static_cast<std::uint16_t>(port);
}

bool is_this_machine(const std::string& host) {
  constexpr std::string_view below = ".localhost";
  const bool is_below = host.size() > below.size() &&
                        host.compare(host.size() - below.size(), below.size(), below) == 0;
  return is_below || host == "localhost" || host == "127.0.0.1" || host == "[::1]";
}

std::optional<origin> made_of(const address_parts& parts, std::uint16_t default_port) {
  const std::string host = ascii_host(parts.host);
  const auto port = port_of(parts.port, default_port);
  if (host.empty() || !port) return std::nullopt;
  return origin{{parts.scheme.begin(), parts.scheme.end()}, host, *port};
}

}  // namespace

std::optional<origin> origin_of(wide_view address) {
  const address_parts parts = split(address);
  if (parts.scheme == u"https") return made_of(parts, 443);
  if (parts.scheme == u"http") return made_of(parts, 80);
  return std::nullopt;
}

std::optional<origin> origin_of_site(wide_view site) {
  address_parts parts = split(site);
  if (!parts.scheme.empty()) return origin_of(site);
  const bool here = is_this_machine(ascii_host(parts.host));
  parts.scheme = here ? u"http" : u"https";
  return made_of(parts, here ? any_port : 443);
}

std::string text_of(const origin& o) {
  const std::string port = o.port == any_port ? "*" : std::to_string(o.port);
  return o.scheme + "://" + o.host + ':' + port;
}

std::string parent_of(const std::string& host) {
  const std::size_t dot = host.find('.');
  return dot == std::string::npos ? std::string() : host.substr(dot + 1);
}
