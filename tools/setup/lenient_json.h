// JSON as browsers read it. The host's own parser accepts much that a browser doesn't, and browsers
// differ in what they accept. So a text is judged by the rules of its browser, and converted to
// strict JSON.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What a reader accepts beyond RFC 8259.
struct json_leniency {
  bool comments = false;                // of both kinds
  bool hex_escapes = false;             // \x41
  bool line_ends_in_strings = false;    // as they are
  bool lone_surrogates = false;         // as escapes
  bool commas_before_brackets = false;  // the last one of a list
};

// What Chromium accepts in a manifest and in its policies, and Firefox in either; tested with
// Chromium 156 and Firefox 153.
inline constexpr json_leniency chromium_manifest = {true, true, true, false, false};
inline constexpr json_leniency chromium_policy = {true, true, true, false, true};
inline constexpr json_leniency firefox_json = {false, false, false, true, false};

struct strict_json {
  std::string text;                  // the same in strict JSON, without white space
  std::optional<std::size_t> fault;  // offset of the first byte that doesn't fit, if there is one
};

// A byte order mark may come first. UTF-8 isn't checked. Numbers that don't fit a double are a
// fault, and so is a value nested in more than 199 others.
strict_json to_strict_json(std::string_view text, const json_leniency& leniency);
