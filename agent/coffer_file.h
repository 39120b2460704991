// Fills the development agent's coffer.
#pragma once

#include <string>

#include "agent/coffer.h"

// Fills an empty coffer from the JSON file at `path` or, if there is none, with a demo: one login
// for example.com. False for a file that can't be used, with a message in `problem` that names the
// file and, for faulty content, the line and column.
//
// The file is an object with up to four members:
//   "locked"    true or false
//   "explain"   true or false
//   "settings"  an object of texts that override the defaults; these let the extension fill by
//               itself
//   "logins"    an array of objects with the texts "site", "user" and "password", and "subdomains",
//               true or false
// origin.h says what a site may be, public_suffix.h which ones have no subdomains of their own.
bool load_coffer(const std::string& path, coffer& target, std::string& problem);
