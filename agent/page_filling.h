// What logins and pages have to do with each other.
//
// Of a page's inputs two belong to a login. The password is the first of type "password"; the user
// name is the last of type "text" or "email" ahead of it, or, on a page without a password, the
// first.
#pragma once

#include <optional>

#include "agent/coffer.h"
#include "messages/website.h"

// True for a page that was just submitted: it names what submitted it ("submit-source"), or the
// event that it reports ("source-event") is "submit". The request's method doesn't travel with the
// page.
bool is_submitted(const CfMsgWebsite& page);

// The login that was typed into the page; nothing if no password was.
std::optional<login> typed_login(const CfMsgWebsite& page);

// Makes the page the coffer's answer to it. The login of the page's address goes into the two
// inputs, unless they are readonly: into "value", and into "cf-value" with "cf-schema" saying which
// part of the login it is, "user" or "password". Other inputs keep what the page had. From a locked
// coffer the answer has empty values throughout, so that nothing that was filled in before comes
// out again.
void fill_page(CfMsgWebsite& page, const coffer& store);
