// Fills the development agent's coffer.
#pragma once

#include <string>

#include "agent/coffer.h"

// Fills an empty coffer from the JSON file at `path`, or, if there is none, with a demo: one login
// for example.com. False for a file that can't be used, with a message in `problem` that names the
// file and, for faulty content, the line and column.
//
// The file is an object with up to three members:
//   "locked"    true or false
//   "settings"  an object of texts, laid over the defaults
//   "logins"    an array of objects with the texts "site" (a host or an address), "user",
//   "password"
bool load_coffer(const std::string& path, coffer& target, std::string& problem);
