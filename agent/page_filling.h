// Which input of a page gets which part of a login.
#pragma once

#include <vector>

#include "agent/coffer.h"
#include "agent/page_reading.h"

enum class filling { none, user, password };

// One for each field of the reading. User and password are filled in logins, and the current
// password where one is changed.
//
// In a "drop-down", "click-source" names the input that the user points at, by its id or name. Then
// only the form of that input is filled, and where the form is in doubt the user's choice decides.
// Read-only inputs, and those that are plainly something else, are never filled.
std::vector<filling> decide(const CfMsgWebsite& page, const page_reading& reading);

// Turns the page into the coffer's answer to it. The login for the page's address goes into the
// inputs that `decide` names: into "value", and into "cf-value", with "cf-schema" saying which part
// of the login it is, "user" or "password". Other inputs keep what the page had. The answer of a
// locked coffer has no values at all, so that nothing filled in earlier comes out again.
void fill_page(CfMsgWebsite& page, const coffer& store);
