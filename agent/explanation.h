// Explains to people what the agent made of a page.
#pragma once

#include <string>

#include "agent/page_filling.h"

// One line for the page and one for each of at most the first 200 inputs: what it was taken for, in
// which kind of form, and what becomes of it. Names are cut, and '?' stands for anything but
// printable ASCII. There are no values: neither the page's nor the login's.
std::string explanation(const CfMsgWebsite& page, const page_reading& reading,
                        const std::vector<filling>& fillings, bool has_login);
