#include "agent/password_form.h"

namespace {

// Some logins ask for a second password, of a token say, right behind the first one.
bool is_login_with_two(const form_view& view) {
  const bool are_plain = view.count({field_kind::password}) == 2 && view.passwords.size() == 2;
  return view.form.says_login && are_plain && view.passwords[1] == view.passwords[0] + 1 &&
         view.count({field_kind::user_name, field_kind::email, field_kind::account}) == 1;
}

std::optional<position> current_of_many(const form_view& view, std::size_t chosen) {
  for (const position input : view.passwords) {
    if (view.kind_at(input) == field_kind::current_password) return input;
  }
  const bool others_are_new = chosen + 1 == view.passwords.size();
  const bool by_place = view.passwords.size() == 3 && view.hint == means_change && chosen == 0;
  if (view.kind_at(view.passwords[0]) != field_kind::password) return std::nullopt;
  return others_are_new || by_place ? std::optional(view.passwords[0]) : std::nullopt;
}

// The password is also asked for where a new address is given, or the account removed.
page_kind kind_around_current(const form_view& view) {
  using enum field_kind;
  const bool names_user = view.count({user_name, email}) > 0;
  if (view.hint == means_sign_up && names_user) return page_kind::sign_up;
  const std::size_t details = view.hint == means_login ? 0 : view.count({detail});
  const bool is_login = view.may_be_login() && details + view.count({new_user}) == 0;
  return is_login ? page_kind::login : page_kind::change_password;
}

page_kind kind_around_password(const form_view& view) {
  using enum field_kind;
  if (!view.may_be_login()) {
    if (view.hint == means_sign_up) return page_kind::sign_up;
    // The one password of a change may be the old one as well as the new one, unless something
    // else is new.
    const bool is_change = view.hint == means_change && view.count({new_user}) > 0;
    return is_change ? page_kind::change_password : page_kind::unsure;
  }
  const bool sure = view.hint == means_login;
  const std::size_t details = view.count({detail, new_user});
  if (details > (sure ? 1U : 0U)) return page_kind::sign_up;
  // A login asks for one name of the user.
  const bool is_long = view.count({user_name, email}) > 1 || view.count({other, phone}) > 2 ||
                       (view.count({email}) > 0 && view.count({other}) > 0);
  if (!sure && is_long) return page_kind::unsure;
  return page_kind::login;
}

page_kind kind_with_one_password(const form_view& view) {
  using enum field_kind;
  const field_kind only = view.kind_at(view.passwords[0]);
  if (only == new_password) return page_kind::sign_up;
  if (only == repeated_password) return page_kind::unsure;
  const page_kind kind =
      only == current_password ? kind_around_current(view) : kind_around_password(view);
  const bool is_asked_for = kind == page_kind::login || kind == page_kind::change_password;
  if (is_asked_for) view.form.password = view.passwords[0];
  return kind;
}

}  // namespace

page_kind kind_with_password(const form_view& view) {
  using enum field_kind;
  if (view.count({card}) > 0 || view.hint == means_checkout) return page_kind::checkout;
  if (view.passwords.size() == 1) return kind_with_one_password(view);
  const std::size_t chosen = view.count({new_password, repeated_password});
  // Where nothing names the current one it comes first, before two others.
  const bool is_change = view.hint == means_change || view.count({current_password}) == 1 ||
                         (chosen == 2 && view.passwords.size() == 3);
  if (is_login_with_two(view)) {
    view.form.password = view.passwords[0];
    return page_kind::login;
  }
  if (!is_change) return chosen > 0 ? page_kind::sign_up : page_kind::unsure;
  view.form.password = current_of_many(view, chosen);
  return page_kind::change_password;
}
