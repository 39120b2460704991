// Type names, by which an object of the message family is asked for.
#pragma once

#include "platform/wide.h"

// A pointer to a terminated wide string that lives as long as the process. Two names mean the same
// type if their strings are equal in every code unit.
class cfName {
 public:
  constexpr explicit cfName(const wide_char* text) : text_(text) {}

  constexpr const wide_char* text() const { return text_; }

  friend constexpr bool operator==(const cfName& a, const cfName& b) {
    return wide_view(a.text_) == wide_view(b.text_);
  }

 private:
  const wide_char* text_;
};
