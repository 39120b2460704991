#include "agent/purpose.h"

#include <algorithm>
#include <array>

#include "agent/letters.h"

namespace {

// The longest that a page needs: section, address type, phone type, purpose and remark.
constexpr std::size_t longest_attribute = 120;

struct purpose {
  wide_view name;
  meanings means;
};

// From the HTML standard. Purposes that aren't listed are details of a person or an order.
constexpr purpose purposes[] = {
    {u"username", means_user_name},
    {u"email", means_email},
    {u"current-password", means_current | means_password},
    {u"new-password", means_new | means_password},
    {u"one-time-code", means_one_time},
};

constexpr std::array<wide_view, 14> details = {
    u"name",           u"given-name",   u"additional-name",  u"family-name", u"nickname",
    u"organization",   u"postal-code",  u"country",          u"sex",         u"url",
    u"street-address", u"country-name", u"honorific-prefix", u"language"};

bool begins(wide_view text, wide_view with) { return text.substr(0, with.size()) == with; }

meanings meanings_of_purpose(wide_view name) {
  for (const purpose& known : purposes) {
    if (name == known.name) return known.means;
  }
  if (begins(name, u"cc-") || begins(name, u"transaction-")) return means_card;
  if (name == u"tel" || begins(name, u"tel-")) return means_phone;
  if (begins(name, u"address-") || begins(name, u"bday")) return means_detail;
  const bool is_known = std::find(details.begin(), details.end(), name) != details.end();
  return is_known ? meanings{means_detail} : 0;
}

wide_view last_word(wide_view text) {
  text = text.substr(0, text.find_last_not_of(u' ') + 1);
  return text.substr(text.rfind(u' ') + 1);
}

// The purpose stands last, except for a remark that a passkey is welcome too.
meanings meanings_of_attribute(wide_view attribute) {
  wide_string small(attribute.substr(0, longest_attribute));
  std::transform(small.begin(), small.end(), small.begin(), small_letter);
  wide_view words = small;
  if (last_word(words) == u"webauthn") words = words.substr(0, words.rfind(u"webauthn"));
  return meanings_of_purpose(last_word(words));
}

}  // namespace

input_context split_context(wide_view context) {
  const std::size_t bracket = context.rfind(u'[');
  if (bracket == wide_view::npos || context.back() != u']') return {context, 0};
  const wide_view attribute = context.substr(bracket + 1, context.size() - bracket - 2);
  return {context.substr(0, bracket), meanings_of_attribute(attribute)};
}
