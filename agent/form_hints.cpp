#include "agent/form_hints.h"

#include <algorithm>

namespace {

constexpr int most_texts = 8;

// What a text says of its form, if it says one thing.
meanings clear_hint(meanings hints) {
  constexpr meanings all = ~(means_login - 1U);
  hints &= all;
  return (hints & (hints - 1)) == 0 ? hints : 0;
}

// The first text that says something. Beside the button of a login there is often one for those who
// have forgotten the password, so that one counts only in front, and if no other says anything.
meanings hint_of_texts(wide_view texts) {
  meanings fallback = 0;
  for (int read = 0; read < most_texts && !texts.empty(); ++read) {
    const std::size_t end = std::min(texts.find(u'|'), texts.size());
    const meanings hint = clear_hint(meanings_of_text(texts.substr(0, end)));
    if (hint != 0 && hint != means_reset) return hint;
    if (read == 0) fallback = hint;
    texts.remove_prefix(std::min(end + 1, texts.size()));
  }
  return fallback;
}

// The path of an address, without its query, which often names the page to go on to.
wide_view path_of(wide_view address) {
  const std::size_t scheme = address.find(u"://");
  if (scheme == wide_view::npos) return {};
  address.remove_prefix(scheme + 3);
  address = address.substr(0, address.find_first_of(u"?#"));
  return address.substr(std::min(address.find(u'/'), address.size()));
}

}  // namespace

meanings form_hint(wide_view form_context) {
  const std::size_t bracket = form_context.find(u'[');
  if (bracket == wide_view::npos || form_context.back() != u']') {
    return clear_hint(meanings_of_name(form_context));
  }
  const std::size_t length = form_context.size() - bracket - 2;
  const meanings hint = hint_of_texts(form_context.substr(bracket + 1, length));
  return hint != 0 ? hint : clear_hint(meanings_of_name(form_context.substr(0, bracket)));
}

meanings page_hint(const propsW_t& props) {
  for (const wide_char* const key : {u"context", u"title"}) {
    const meanings hint = clear_hint(meanings_of_text(props.get(key, u"")));
    if (hint != 0) return hint;
  }
  return clear_hint(meanings_of_text(path_of(props.get(u"source", u""))));
}
