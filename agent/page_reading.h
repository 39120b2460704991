// What can be read from a page: its fields and its forms.
#pragma once

#include "agent/page_kind.h"
#include "messages/website.h"

// Inputs beyond this number are left alone: each takes time to read, and no page that people use
// has more.
constexpr std::size_t most_read_inputs = 4096;

struct page_reading {
  std::vector<field> fields;  // of the inputs, in their order; at most `most_read_inputs`
  std::vector<page_form> forms;

  // The form that has the input.
  const page_form& form_of(position input) const;
};

page_reading read_page(const CfMsgWebsite& page);
