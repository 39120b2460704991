#include "agent/page_reading.h"

#include <algorithm>
#include <map>

#include "agent/form_hints.h"

namespace {

std::vector<field> fields_of(const CfMsgWebsite& page) {
  std::vector<field> fields;
  for (const propsW_t& input : page.inputs) {
    if (fields.size() == most_read_inputs) break;
    fields.push_back(field_of(input));
  }
  return fields;
}

// A form that is a login by itself may be in doubt beside the others: one of several logins with
// nothing that says it is one, or a user without a password beside a complete login.
void doubt_logins(std::vector<page_form>& forms) {
  const auto is_login = [](const page_form& form) { return form.kind == page_kind::login; };
  const auto is_whole = [&](const page_form& f) { return is_login(f) && f.user && f.password; };
  const auto says_so = [&](const page_form& f) { return is_login(f) && f.says_login; };
  const bool has_whole = std::any_of(forms.begin(), forms.end(), is_whole);
  for (const bool with_password : {true, false}) {
    const auto counts = [&](const page_form& form) {
      return is_login(form) && form.password.has_value() == with_password;
    };
    const bool several = std::count_if(forms.begin(), forms.end(), counts) > 1;
    for (page_form& form : forms) {
      if (!counts(form)) continue;
      const bool is_doubtful = (several && !says_so(form)) || (!with_password && has_whole);
      if (is_doubtful) form.kind = page_kind::unsure;
    }
  }
}

}  // namespace

const page_form& page_reading::form_of(position input) const {
  return *std::find_if(forms.begin(), forms.end(), [input](const page_form& form) {
    return std::binary_search(form.inputs.begin(), form.inputs.end(), input);
  });
}

page_reading read_page(const CfMsgWebsite& page) {
  page_reading reading;
  reading.fields = fields_of(page);
  std::map<wide_view, page_form> forms;
  for (position input = 0; input < reading.fields.size(); ++input) {
    forms[value_of(page.inputs[input], u"form-context")].inputs.push_back(input);
  }
  const meanings of_page = page_hint(page.props);
  for (auto& [name, form] : forms) {
    classify(form, reading.fields, form_hint(name), of_page);
    reading.forms.push_back(std::move(form));
  }
  doubt_logins(reading.forms);
  return reading;
}
