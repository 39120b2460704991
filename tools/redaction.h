// What of a message doesn't go into a capture. Names are those of members; null is the name of
// none.
#pragma once

#include <cstddef>
#include <string>

// Whether a member of this name is a secret, with all that is in it.
bool is_secret_name(const char* name);

// Whether its text is an address, even one without a scheme.
bool is_address_name(const char* name);

// Whether it differs from one run to the next.
bool is_passing_name(const char* name);

// Stands for a secret of so many bytes: nothing for an empty one. Without its length if `level`.
std::string hidden_mark(std::size_t length, bool level);

// `text` without user, query and fragment, if it begins like an address with a scheme or
// `is_address` says that it is one.
std::string bare_address(const std::string& text, bool is_address);
