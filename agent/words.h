// What the words on a page and in its code mean, in the languages of word_lists.cpp.
#pragma once

#include <cstdint>

#include "platform/wide.h"

// Bits of a set.
enum meaning : std::uint32_t {
  // Of an input.
  means_user_name = 1U << 0,  // a user name and nothing else
  means_account = 1U << 1,    // likely what a login calls its user
  means_email = 1U << 2,
  means_phone = 1U << 3,
  means_password = 1U << 4,
  means_current = 1U << 5,
  means_new = 1U << 6,
  means_repeated = 1U << 7,
  means_one_time = 1U << 8,  // a code that is good once, or the solution of a captcha
  means_code = 1U << 9,      // any sort of code
  means_card = 1U << 10,     // payment: card and bank account
  means_search = 1U << 11,
  means_detail = 1U << 12,  // of a person, an address or an order
  // Of a form or page.
  means_login = 1U << 16,
  means_sign_up = 1U << 17,
  means_change = 1U << 18,  // of a password or user name
  means_reset = 1U << 19,   // of a forgotten password
  means_mailing = 1U << 20,
  means_checkout = 1U << 21,
};
using meanings = std::uint32_t;

// What a name or id in the page's code means. Words are found anywhere in it, since authors add
// prefixes; only the end of a long name is searched.
meanings meanings_of_name(wide_view name);

// What a text for people means: a label, a title. Words are found only where one begins in the
// text, so "blog in" isn't "login". Only the beginning of a long text is searched.
meanings meanings_of_text(wide_view text);
