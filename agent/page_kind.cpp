#include "agent/page_kind.h"

#include <algorithm>
#include <array>

namespace {

// Decides on one form.
class form_classifier {
 public:
  form_classifier(page_form& form, const std::vector<field>& fields, meanings own, meanings of_page)
      : form_(form), fields_(fields) {
    meanings of_fields = 0;
    for (const position input : form.inputs) of_fields |= fields[input].hints;
    form.says_login = own == means_login || (own == 0 && (of_fields & means_login) != 0);
    // The user's field of a sign-up may have a name like "login" too, so that counts least.
    for (const meanings hint : {own, of_fields & means_sign_up, of_page, of_fields & means_login}) {
      if (hint_ == 0) hint_ = hint;
    }
  }

  void classify() {
    for (const position input : form_.inputs) {
      if (is_password(kind_at(input))) passwords_.push_back(input);
    }
    form_.kind = passwords_.empty() ? kind_without_password() : kind_with_password();
    const bool is_doubtful = form_.kind == page_kind::unsure && is_login_hint();
    if (is_doubtful && passwords_.size() == 1 && kind_at(passwords_[0]) == field_kind::password) {
      form_.password = passwords_[0];
    }
    if (is_doubtful || form_.kind == page_kind::login) form_.user = find_user();
  }

 private:
  field_kind kind_at(position input) const { return fields_[input].kind; }

  std::size_t count(std::initializer_list<field_kind> kinds) const {
    const auto is_one = [&](position input) {
      return std::find(kinds.begin(), kinds.end(), kind_at(input)) != kinds.end();
    };
    return static_cast<std::size_t>(
        std::count_if(form_.inputs.begin(), form_.inputs.end(), is_one));
  }

  page_kind kind_by_hint() const {
    if (hint_ == means_sign_up) return page_kind::sign_up;
    if (hint_ == means_checkout) return page_kind::checkout;
    if (hint_ == means_change) return page_kind::change_password;
    return page_kind::unsure;
  }

  bool is_login_hint() const { return hint_ == 0 || hint_ == means_login; }

  // The first step of a login asks for the user alone. An e-mail address alone may just as well be
  // for a newsletter, so it needs a hint.
  page_kind kind_without_password() const {
    using enum field_kind;
    if (count({card}) > 0) return page_kind::checkout;
    if (count({code}) > 0) return page_kind::code;
    if (count({search}) == form_.inputs.size()) return page_kind::search;
    if (!is_login_hint()) return kind_by_hint();
    const bool only_user = count({user_name, email, phone, account}) == 1 &&
                           count({detail, new_user}) == 0 && count({other}) <= 1;
    const bool sure = hint_ == means_login || count({user_name}) == 1;
    return only_user && sure ? page_kind::login : page_kind::unsure;
  }

  page_kind kind_with_password() {
    using enum field_kind;
    if (count({card}) > 0 || hint_ == means_checkout) return page_kind::checkout;
    if (passwords_.size() == 1) return kind_with_one_password();
    const std::size_t chosen = count({new_password, repeated_password});
    // If nothing says which password is the current one, it is the first of three.
    const bool is_change = hint_ == means_change || count({current_password}) == 1 ||
                           (chosen == 2 && passwords_.size() == 3);
    if (!is_change) return chosen > 0 ? page_kind::sign_up : page_kind::unsure;
    form_.password = current_of_many(chosen);
    return page_kind::change_password;
  }

  std::optional<position> current_of_many(std::size_t chosen) const {
    for (const position input : passwords_) {
      if (kind_at(input) == field_kind::current_password) return input;
    }
    const bool others_are_new = chosen + 1 == passwords_.size();
    const bool by_place = passwords_.size() == 3 && hint_ == means_change && chosen == 0;
    if (kind_at(passwords_[0]) != field_kind::password) return std::nullopt;
    return others_are_new || by_place ? std::optional(passwords_[0]) : std::nullopt;
  }

  page_kind kind_with_one_password() {
    using enum field_kind;
    const field_kind only = kind_at(passwords_[0]);
    if (only == new_password) return page_kind::sign_up;
    if (only == repeated_password) return page_kind::unsure;
    const page_kind kind =
        only == current_password ? kind_around_current() : kind_around_password();
    const bool is_asked_for = kind == page_kind::login || kind == page_kind::change_password;
    if (is_asked_for) form_.password = passwords_[0];
    return kind;
  }

  // The current password is also asked for when people enter a new address or remove the account.
  page_kind kind_around_current() const {
    using enum field_kind;
    const bool names_user = count({user_name, email}) > 0;
    if (hint_ == means_sign_up && names_user) return page_kind::sign_up;
    const std::size_t details = hint_ == means_login ? 0 : count({detail});
    const bool is_login = is_login_hint() && details + count({new_user}) == 0;
    return is_login ? page_kind::login : page_kind::change_password;
  }

  page_kind kind_around_password() const {
    using enum field_kind;
    if (!is_login_hint()) {
      // The only password of a change may be the old one or the new one.
      return hint_ == means_sign_up ? page_kind::sign_up : page_kind::unsure;
    }
    const bool sure = hint_ == means_login;
    const std::size_t details = count({detail, new_user});
    if (details > (sure ? 1U : 0U)) return page_kind::sign_up;
    // A login asks for one name of the user only.
    const bool is_long = count({user_name, email}) > 1 || count({other, phone}) > 2;
    if (!sure && is_long) return page_kind::unsure;
    return page_kind::login;
  }

  // The best match before the password; of several equally good ones, the nearest.
  std::optional<position> find_user() const {
    std::optional<position> best;
    for (const position input : form_.inputs) {
      if (form_.password && input > *form_.password) break;
      const int fitness = fitness_for_user(kind_at(input));
      if (fitness > 0 && (!best || fitness >= fitness_for_user(kind_at(*best)))) best = input;
    }
    return best;
  }

  page_form& form_;
  const std::vector<field>& fields_;
  meanings hint_ = 0;
  std::vector<position> passwords_;
};

}  // namespace

const char* text_of(page_kind kind) {
  static constexpr std::array texts = {"unsure",   "login", "sign-up", "change of password",
                                       "checkout", "code",  "search"};
  return texts[static_cast<std::size_t>(kind)];
}

void classify(page_form& form, const std::vector<field>& fields, meanings own_hint,
              meanings page_hint) {
  form_classifier(form, fields, own_hint, page_hint).classify();
}

int fitness_for_user(field_kind kind) {
  switch (kind) {
    case field_kind::user_name:
      return 4;
    case field_kind::email:
      return 3;
    case field_kind::account:
    case field_kind::phone:
      return 2;
    case field_kind::other:
      return 1;
    default:
      return 0;
  }
}
