// The ids under which browsers know extensions.
#pragma once

#include <optional>
#include <string>

#include "tools/setup/browsers.h"

// The form of an id, or nothing, with what is wrong in `error`. Chromium's ids are 32 letters from
// a to p; Firefox's are name@domain or a {GUID}.
std::optional<id_form> form_of_id(const std::string& id, std::string& error);

// How a manifest lists the extension, and how a browser names it to a host that it starts.
std::string origin_of(const std::string& id, id_form form);

// Whether the browser accepts an entry of a manifest's list. One entry that it doesn't accept makes
// the whole manifest useless.
bool is_origin(const std::string& origin, id_form form);

// The id of the extension that an entry allows; empty if no extension can have it.
std::string id_of_origin(const std::string& origin, id_form form);
