// A form that is being classified, with the fields of its page.
#pragma once

#include <algorithm>
#include <initializer_list>

#include "agent/page_kind.h"

struct form_view {
  page_form& form;
  const std::vector<field>& fields;
  meanings hint;  // what it seems to be for, 0 if nothing says so
  std::vector<position> passwords;

  field_kind kind_at(position input) const { return fields[input].kind; }

  // How many inputs are of one of the kinds.
  std::size_t count(std::initializer_list<field_kind> kinds) const {
    const auto is_one = [&](position input) {
      return std::find(kinds.begin(), kinds.end(), kind_at(input)) != kinds.end();
    };
    return static_cast<std::size_t>(std::count_if(form.inputs.begin(), form.inputs.end(), is_one));
  }

  bool may_be_login() const { return hint == 0 || hint == means_login; }
};
