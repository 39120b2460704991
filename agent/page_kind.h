// What kind of form the inputs of a page make, and which of them are a login's.
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

// The inputs that say that they are of one form; those that say nothing are another one. A page may
// hold several kinds of forms, so each has its own.
struct page_form {
  page_kind kind = page_kind::unsure;
  bool says_login = false;  // by texts of its own, not just the page's
  std::vector<position> inputs;
  // Of a login, and of what may be one; the password also of a change, the current one.
  std::optional<position> user;
  std::optional<position> password;
};

// Finds out everything of a form but its inputs. A hint is what a text says that the form is for, 0
// where it says nothing: `own_hint` the form's name, `page_hint` the texts of the page.
void classify(page_form& form, const std::vector<field>& fields, meanings own_hint,
              meanings page_hint);
