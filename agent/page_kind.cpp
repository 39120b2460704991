#include "agent/page_kind.h"

#include <array>

#include "agent/password_form.h"
#include "agent/user_field.h"

namespace {

form_view view_of(page_form& form, const std::vector<field>& fields, meanings own,
                  meanings of_page) {
  form_view view{form, fields, 0, {}};
  meanings of_fields = 0;
  for (const position input : form.inputs) {
    of_fields |= fields[input].hints;
    if (is_password(view.kind_at(input))) view.passwords.push_back(input);
  }
  // Nobody types a password for a newsletter; but subscribers log in.
  for (meanings* const hint : {&own, &of_page}) {
    if (!view.passwords.empty() && *hint == means_mailing) *hint = 0;
  }
  form.says_login = own == means_login || (own == 0 && (of_fields & means_login) != 0);
  // Names like "login" are given to the user's field of a sign-up, too, so they count least.
  for (const meanings hint : {own, of_fields & means_sign_up, of_page, of_fields & means_login}) {
    if (view.hint == 0) view.hint = hint;
  }
  return view;
}

page_kind kind_by_hint(meanings hint) {
  if (hint == means_sign_up) return page_kind::sign_up;
  if (hint == means_checkout) return page_kind::checkout;
  if (hint == means_change) return page_kind::change_password;
  return page_kind::unsure;
}

// The first step of a login asks for the user alone, or for the company besides. An address alone
// may as well be for a newsletter, so that needs a hint, and any other input a hint of the form's.
page_kind kind_without_password(const form_view& view) {
  using enum field_kind;
  if (view.count({card}) > 0) return page_kind::checkout;
  if (view.count({code}) > 0) return page_kind::code;
  if (view.count({search}) == view.form.inputs.size()) return page_kind::search;
  if (!view.may_be_login()) return kind_by_hint(view.hint);
  const bool only_user = view.count({user_name, email, phone, account}) == 1 &&
                         view.count({detail, new_user}) == 0 &&
                         view.count({other}) <= (view.form.says_login ? 1U : 0U);
  const bool sure = view.hint == means_login || view.count({user_name}) == 1;
  return only_user && sure ? page_kind::login : page_kind::unsure;
}

}  // namespace

const char* text_of(page_kind kind) {
  static constexpr std::array texts = {"unsure",   "login", "sign-up", "change of password",
                                       "checkout", "code",  "search"};
  return texts[static_cast<std::size_t>(kind)];
}

void classify(page_form& form, const std::vector<field>& fields, meanings own_hint,
              meanings page_hint) {
  const form_view view = view_of(form, fields, own_hint, page_hint);
  const auto& passwords = view.passwords;
  form.kind = passwords.empty() ? kind_without_password(view) : kind_with_password(view);
  const bool is_doubtful = form.kind == page_kind::unsure && view.may_be_login();
  const bool has_one = passwords.size() == 1 && view.kind_at(passwords[0]) == field_kind::password;
  if (is_doubtful && has_one) form.password = passwords[0];
  if (!is_doubtful && form.kind != page_kind::login) return;
  form.user = best_user(form.inputs, form.password,
                        [&view](position input) { return fitness_for_user(view.kind_at(input)); });
}
