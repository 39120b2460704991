#include "agent/explanation.h"

#include <algorithm>

#include "agent/user_field.h"

namespace {

constexpr std::size_t most_lines = 200;
constexpr std::size_t longest_name = 40;

// Pages must not send control sequences to a terminal.
std::string shown(wide_view name) {
  std::string text;
  for (const wide_char c : name.substr(0, longest_name)) {
    text += c >= 0x20 && c < 0x7F ? static_cast<char>(c) : '?';
  }
  return text;
}

std::string name_of(const propsW_t& input) {
  const wide_view name = value_of(input, u"name");
  return shown(name.empty() ? value_of(input, u"id") : name);
}

const char* outcome(filling part, const field& f, page_kind form, bool has_login) {
  if (!has_login) return "left alone, since there is no login to fill in";
  if (part == filling::user) return "filled with the user";
  if (part == filling::password) return "filled with the password";
  if (!f.editable) return "left alone, since it is readonly";
  const bool may_be_login = fitness_for_user(f.kind) > 0 || f.kind == field_kind::password;
  if (form == page_kind::unsure && may_be_login) return "left alone, until the user points at it";
  return "left alone";
}

std::string page_line(const CfMsgWebsite& page, std::size_t inputs) {
  const std::optional<origin> o = origin_of(value_of(page.props, u"source"));
  const std::string count = std::to_string(inputs) + (inputs == 1 ? " input\n" : " inputs\n");
  return "cfagent: page of " + (o ? text_of(*o) : "no site") + ", " + count;
}

}  // namespace

std::string explanation(const CfMsgWebsite& page, const page_reading& reading,
                        const std::vector<filling>& fillings, bool has_login) {
  std::string lines = page_line(page, page.inputs.size());
  const std::size_t told = std::min(fillings.size(), most_lines);
  for (position i = 0; i < told; ++i) {
    const field& f = reading.fields[i];
    const page_kind form = reading.form_of(i).kind;
    lines += "cfagent:   " + std::to_string(i + 1) + " \"" + name_of(page.inputs[i]) + "\": ";
    lines += text_of(f.kind) + std::string(", form: ") + text_of(form) + ": ";
    lines += outcome(fillings[i], f, form, has_login) + std::string("\n");
  }
  if (page.inputs.size() > told) lines += "cfagent:   and more\n";
  return lines;
}
