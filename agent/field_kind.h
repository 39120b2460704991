// What an input of a page is for, judged by its type and its words alone.
#pragma once

#include "agent/words.h"
#include "messages/property_bag.h"

// In the order of the texts in field_kind.cpp.
enum class field_kind {
  other,  // text whose purpose isn't known
  user_name,
  email,
  phone,
  account,           // likely a user name
  new_user,          // a user name or address for a new account
  password,          // of an input of type "password", like the next three
  current_password,  // explicitly that of an existing account
  new_password,
  repeated_password,
  shown_password,  // in an input that shows its text
  code,
  card,
  search,
  detail,  // of a person, an address or an order
  not_text,
};

struct field {
  field_kind kind;
  meanings hints;  // what its name and id say about the form
  bool editable;
};

field field_of(const propsW_t& input);

const char* text_of(field_kind kind);

// Of type "password", and for a password of the site.
bool is_password(field_kind kind);

// What `bag` has under `key`, or an empty text.
wide_view value_of(const propsW_t& bag, const wide_char* key);
