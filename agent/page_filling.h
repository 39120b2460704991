// Which input of a page gets which part of a login.
#pragma once

#include <vector>

#include "agent/coffer.h"
#include "agent/page_reading.h"

enum class filling { none, user, password };

// One for each field of the reading. User and password are filled in logins, and the current
// password where one is changed.
//
// A "drop-down" names the input that the user points at, by its id or name, in "click-source". Then
// only that one's form is filled, and where the form is in doubt the user's word counts. A
// "drop-down" without it is for the page's logins; if there is none, for the only form in doubt
// that has a password. Readonly inputs, and those that are plainly something else, are never
// filled.
std::vector<filling> decide(const CfMsgWebsite& page, const page_reading& reading);

// Makes the page the coffer's answer to it. The login of the page's address goes into the inputs
// that `decide` gives: into "value", and into "cf-value" with "cf-schema" saying which part of the
// login it is, "user" or "password". Its user stands in the property "known-login" of the page,
// whether or not something is filled. Other inputs keep what the page had. From a locked coffer the
// answer has empty values throughout, so that nothing that was filled in before comes out again.
void fill_page(CfMsgWebsite& page, const coffer& store);
