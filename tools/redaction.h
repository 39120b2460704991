// What a capture leaves out of a message. A name is that of a member; null stands for no name.
#pragma once

#include <cstddef>
#include <string>

// Whether a member of this name is secret, with everything in it.
bool is_secret_name(const char* name);

// Whether its text is an address, even one without a scheme.
bool is_address_name(const char* name);

// Whether it differs from one run to the next.
bool is_passing_name(const char* name);

// The mark for a secret of `length` bytes; nothing for an empty one. Leaves out the length if
// `level`.
std::string hidden_mark(std::size_t length, bool level);

// `text` without user, query and fragment, if it begins like an address with a scheme, or if
// `is_address` says that it is one.
std::string bare_address(const std::string& text, bool is_address);
