// Hosts below which names are given out to anybody.
#pragma once

#include <string>

// True where subdomains may belong to different people, so that none may have another's login: a
// host of one label, an address in numbers, and the public suffixes that are known here. That is a
// short table, and no replacement for the Public Suffix List.
bool is_public_suffix(const std::string& host);
