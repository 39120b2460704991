// Whether a text is JSON by the letter of RFC 8259. The host's own parser forgives much that a
// browser doesn't, and a manifest has to satisfy the browser.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

// The offset of the first byte that doesn't fit, or nothing if the whole text is one JSON value.
// Values nested deeper than any manifest's count as a fault too.
std::optional<std::size_t> find_json_fault(std::string_view text);
