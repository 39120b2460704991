// Tells people what the agent made of a page.
#pragma once

#include <string>

#include "agent/page_filling.h"

// A line for the page and one for each input, for at most the first 200: what it was taken for, in
// which kind of form, and what becomes of it. Names are cut, and show what is no printable ASCII as
// '?'. No values: neither the page's nor the login's.
std::string explanation(const CfMsgWebsite& page, const page_reading& reading,
                        const std::vector<filling>& fillings, bool has_login);
