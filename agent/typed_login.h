// What a page tells of a login when it is submitted.
#pragma once

#include <optional>

#include "agent/coffer.h"
#include "messages/website.h"

// True for a page that was just submitted: it names what submitted it ("submit-source"), or the
// event that it reports ("source-event") is "submit". The request's method doesn't travel with the
// page.
bool is_submitted(const CfMsgWebsite& page);

// The login that was typed into the page: of a sign-up or a change the new password. Without a user
// if none was typed; nothing if no password was.
std::optional<login> typed_login(const CfMsgWebsite& page);
