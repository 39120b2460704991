// What kind of form the inputs of a page make, and which of them belong to a login.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "agent/field_kind.h"

// In the order of the texts in page_kind.cpp.
enum class page_kind { unsure, login, sign_up, change_password, checkout, code, search };

const char* text_of(page_kind kind);

// Inputs are known by their position in the page.
using position = std::size_t;

// The inputs that name the same form; those that name none make up another. A page may hold several
// kinds of forms, so each has its own.
struct page_form {
  page_kind kind = page_kind::unsure;
  bool says_login = false;  // by texts of its own, not just the page's
  std::vector<position> inputs;
  // Set for a login and for what may be one; `password` also for a change: the current one.
  std::optional<position> user;
  std::optional<position> password;
};

// Fills in everything about a form but its inputs. A hint is what a text says the form is for, 0 if
// it says nothing: `own_hint` from the form's name, `page_hint` from the texts of the page.
void classify(page_form& form, const std::vector<field>& fields, meanings own_hint,
              meanings page_hint);
