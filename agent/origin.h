// The origin of a page: scheme, host and port of its address, as browsers compare them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "platform/wide.h"

// The port of a site on this machine that names none: a development server uses a different one
// every day.
constexpr std::uint16_t any_port = 0;

struct origin {
  std::string scheme;  // "http" or "https"
  std::string host;    // lower case, names beyond ASCII in Punycode
  std::uint16_t port;

  bool operator<(const origin& other) const {
    return std::tie(scheme, host, port) < std::tie(other.scheme, other.host, other.port);
  }
};

// The origin of a page's address. Nothing for other schemes, an impossible host, or a port beyond
// 65535.
std::optional<origin> origin_of(wide_view address);

// The origin of a site as a person writes it. An address counts as it stands. Without a scheme it
// is "https", except on this machine ("localhost", names below it, 127.0.0.1 and [::1]): there it
// is "http", and without a port it stands for any port.
std::optional<origin> origin_of_site(wide_view site);

// "https://example.com:443", for people to read.
std::string text_of(const origin& o);

// The host one label up, or an empty text for the last one.
std::string parent_of(const std::string& host);
