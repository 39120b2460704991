#include "agent/field_kind.h"

#include <algorithm>
#include <array>

#include "agent/letters.h"
#include "agent/purpose.h"

namespace {

// Page authors write types and truth values in letters of either case.
bool equals(wide_view text, wide_view small_letters) {
  return std::equal(text.begin(), text.end(), small_letters.begin(), small_letters.end(),
                    [](wide_char a, wide_char b) { return small_letter(a) == b; });
}

bool is_one_of(wide_view text, std::initializer_list<wide_view> list) {
  return std::any_of(list.begin(), list.end(), [text](wide_view one) { return equals(text, one); });
}

// For something that the account will have only after this page.
constexpr meanings means_to_be = means_new | means_repeated;

field_kind password_kind(meanings m) {
  if (m & means_card) return field_kind::card;
  if (m & means_one_time) return field_kind::code;
  if ((m & means_current) && !(m & means_new)) return field_kind::current_password;
  if (m & means_repeated) return field_kind::repeated_password;
  if (m & means_new) return field_kind::new_password;
  return field_kind::password;
}

// From the words that leave the least doubt to those that leave the most.
field_kind text_kind(meanings m) {
  const bool is_new = (m & means_to_be) != 0;
  if (m & means_search) return field_kind::search;
  if (m & means_one_time) return field_kind::code;
  if (m & means_user_name) return is_new ? field_kind::new_user : field_kind::user_name;
  if (m & means_card) return field_kind::card;
  if ((m & means_email) && !(m & means_code)) {
    return is_new ? field_kind::new_user : field_kind::email;
  }
  if (m & means_detail) return field_kind::detail;
  if (m & means_code) return field_kind::code;
  if (m & means_password) return field_kind::shown_password;
  if (m & means_phone) return field_kind::phone;
  if (m & means_account) return is_new ? field_kind::new_user : field_kind::account;
  return is_new ? field_kind::detail : field_kind::other;
}

// What the type alone says, for inputs whose words say nothing.
field_kind kind_by_type(wide_view type) {
  if (equals(type, u"tel")) return field_kind::phone;
  if (equals(type, u"search")) return field_kind::search;
  if (equals(type, u"number")) return field_kind::detail;
  return field_kind::other;
}

// A name that says almost nothing: "f1", "login", "password", "code".
bool is_vague(field_kind kind, meanings name) {
  return kind == field_kind::other || kind == field_kind::account || kind == field_kind::password ||
         (kind == field_kind::code && !(name & means_one_time));
}

bool tells_more(field_kind label) {
  return label != field_kind::other && label != field_kind::password;
}

// Names in the code are more precise than the label, which counts only where they are vague.
template <class Kind>
field_kind kind_by_words(meanings name, meanings label, Kind kind_of) {
  const field_kind by_name = kind_of(name);
  const field_kind by_label = kind_of(label);
  return is_vague(by_name, name) && tells_more(by_label) ? by_label : by_name;
}

bool is_readonly(const propsW_t& input) {
  const wide_view text = value_of(input, u"readonly");
  return !text.empty() && !equals(text, u"false") && text != u"0";
}

// What a page says outright counts more than words, but these may add that the value is a new one.
field_kind kind_of(wide_view type, meanings purpose, meanings name, meanings label) {
  if (equals(type, u"password")) {
    return purpose != 0 ? password_kind(purpose) : kind_by_words(name, label, password_kind);
  }
  if (!is_one_of(type, {u"", u"text", u"email", u"tel", u"search", u"number"})) {
    return field_kind::not_text;
  }
  if (purpose != 0) return text_kind(purpose | ((name | label) & means_to_be));
  if (equals(type, u"email")) name |= means_email;
  name |= label & means_to_be;
  const field_kind by_words = kind_by_words(name, label, text_kind);
  return by_words == field_kind::other ? kind_by_type(type) : by_words;
}

constexpr meanings form_meanings = ~(means_login - 1U);

}  // namespace

field field_of(const propsW_t& input) {
  const wide_view name = value_of(input, u"name");
  const wide_view id = value_of(input, u"id");
  const meanings names = meanings_of_name(name) | (id == name ? 0 : meanings_of_name(id));
  const input_context context = split_context(value_of(input, u"context"));
  const meanings label = meanings_of_text(context.label);
  return {kind_of(value_of(input, u"type"), context.purpose, names, label), names & form_meanings,
          !is_readonly(input)};
}

const char* text_of(field_kind kind) {
  static constexpr std::array texts = {"text of unknown purpose",
                                       "user name",
                                       "e-mail address",
                                       "phone number",
                                       "account",
                                       "new user name",
                                       "password",
                                       "current password",
                                       "new password",
                                       "repeated password",
                                       "shown password",
                                       "code",
                                       "card",
                                       "search",
                                       "personal detail",
                                       "no text"};
  return texts[static_cast<std::size_t>(kind)];
}

bool is_password(field_kind kind) {
  return kind >= field_kind::password && kind <= field_kind::repeated_password;
}

wide_view value_of(const propsW_t& bag, const wide_char* key) { return bag.get(key, u""); }
