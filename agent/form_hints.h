// What the texts of a form and of its page say that it is for.
#pragma once

#include "agent/words.h"
#include "messages/property_bag.h"

// Each is one meaning of a form, or 0 where the texts say nothing, or several things: "Log in or
// sign up".

// Of what an input has as its form: a name and, in brackets and with bars between them, what people
// read, as in "f1 [Sign in | Your account]". The buttons stand first, and count more than the name.
meanings form_hint(wide_view form_context);

// Of the page's heading, title and path.
meanings page_hint(const propsW_t& props);
