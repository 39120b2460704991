// Finds the login in a page that is submitted.
#pragma once

#include <optional>

#include "agent/coffer.h"
#include "messages/website.h"

// True for a page that was just submitted: it names what submitted it ("submit-source"), or it
// reports the event "submit" ("source-event"). The request's method doesn't come with the page.
bool is_submitted(const CfMsgWebsite& page);

// The login that was typed into the page; when signing up or changing a password, with the new one.
// Without a user if none was typed; nothing if no password was.
std::optional<login> typed_login(const CfMsgWebsite& page);
