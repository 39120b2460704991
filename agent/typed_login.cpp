#include "agent/typed_login.h"

#include "agent/page_reading.h"
#include "agent/user_field.h"

namespace {

// The filled-in inputs of the first form in which a password was typed.
class typed_form {
 public:
  typed_form(const CfMsgWebsite& page, const page_reading& reading)
      : page_(page), reading_(reading) {
    for (position i = 0; i < reading.fields.size(); ++i) {
      if (!has_value(i) || !is_password(kind_at(i))) continue;
      form_ = &reading.form_of(i);
      break;
    }
  }

  std::optional<position> password() const {
    std::optional<position> found;
    if (form_ == nullptr) return found;
    for (const position i : form_->inputs) {
      if (!has_value(i) || !is_password(kind_at(i))) continue;
      if (!found || is_newer(i, *found)) found = i;
    }
    return found;
  }

  std::optional<position> user(position password) const {
    return best_user(form_->inputs, password,
                     [this](position i) { return has_value(i) ? fitness(i) : 0; });
  }

 private:
  field_kind kind_at(position i) const { return reading_.fields[i].kind; }

  bool has_value(position i) const { return !value_of(page_.inputs[i], u"value").empty(); }

  // A repetition adds nothing, unless the first one was the account's current password.
  bool is_newer(position later, position earlier) const {
    if (kind_at(earlier) == field_kind::new_password) return false;
    return kind_at(later) == field_kind::new_password || form_->password == earlier;
  }

  // When signing up, people choose a user name in inputs that a login wouldn't fill.
  int fitness(position i) const {
    const field_kind kind = kind_at(i);
    return fitness_for_user(kind == field_kind::new_user ? field_kind::user_name : kind);
  }

  const CfMsgWebsite& page_;
  const page_reading& reading_;
  const page_form* form_ = nullptr;
};

}  // namespace

bool is_submitted(const CfMsgWebsite& page) {
  return !value_of(page.props, u"submit-source").empty() ||
         value_of(page.props, u"source-event") == u"submit";
}

std::optional<login> typed_login(const CfMsgWebsite& page) {
  const page_reading reading = read_page(page);
  const typed_form form(page, reading);
  const std::optional<position> password = form.password();
  if (!password) return std::nullopt;
  login typed;
  typed.password = value_of(page.inputs[*password], u"value");
  if (const auto user = form.user(*password)) typed.user = value_of(page.inputs[*user], u"value");
  return typed;
}
