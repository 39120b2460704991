// Hosts below which anybody can get a name.
#pragma once

#include <string>

// True where subdomains may belong to different people, so that none of them may get another's
// login: a host of one label, a numeric address, and the public suffixes known here. Their table is
// short, and no replacement for the Public Suffix List.
bool is_public_suffix(const std::string& host);
