// JSON as browsers read it. The host's own parser forgives much that a browser doesn't, and
// browsers forgive different things: what they read is judged by their rules, and brought into one
// form.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What a reader takes beyond RFC 8259.
struct json_leniency {
  bool comments = false;                // of both kinds
  bool hex_escapes = false;             // \x41
  bool line_ends_in_strings = false;    // as they are
  bool lone_surrogates = false;         // as escapes
  bool commas_before_brackets = false;  // the last one of a list
};

// What Chromium takes in a manifest and in its policies, and Firefox in either: as tried with
// Chromium 156 and Firefox 153.
inline constexpr json_leniency chromium_manifest = {true, true, true, false, false};
inline constexpr json_leniency chromium_policy = {true, true, true, false, true};
inline constexpr json_leniency firefox_json = {false, false, false, true, false};

struct strict_json {
  std::string text;                  // means the same by the letter of the RFC, without white space
  std::optional<std::size_t> fault;  // offset of the first byte that doesn't fit, if there is one
};

// A byte order mark may stand in front. Not looked at is whether the text is UTF-8. Numbers that no
// double holds are a fault, and so is a value inside of more than 199 others.
strict_json to_strict_json(std::string_view text, const json_leniency& leniency);
