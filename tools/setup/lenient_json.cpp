#include "tools/setup/lenient_json.h"

#include <algorithm>
#include <utility>

#include "tools/setup/json_scalars.h"

namespace {

constexpr int max_depth = 199;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

class checker {
 public:
  checker(std::string_view text, const json_leniency& leniency)
      : from_(text), leniency_(leniency) {}

  strict_json run() {
    from_.skip(byte_order_mark);
    skip_space();
    if (value(0) && from_.is_at_end()) return {std::move(from_.out()), std::nullopt};
    return {{}, from_.at()};
  }

 private:
  // A comment that nothing ends is left where it is, and doesn't fit.
  bool skip_comment(std::string_view start, std::string_view end, bool ends_with_text) {
    if (!leniency_.comments || !from_.starts_with(start)) return false;
    const std::string_view text = from_.text();
    const std::size_t stop = text.find(end, from_.at() + start.size());
    if (stop == std::string_view::npos && !ends_with_text) return false;
    from_.go_to(stop == std::string_view::npos ? text.size() : stop + end.size());
    return true;
  }

  void skip_space() {
    do {
      from_.go_to(
          std::min(from_.text().find_first_not_of(" \t\n\r", from_.at()), from_.text().size()));
    } while (skip_comment("//", "\n", true) || skip_comment("/*", "*/", false));
  }

  // A punctuation mark and the white space behind it.
  bool mark(char c) {
    if (!from_.take(c)) return false;
    skip_space();
    return true;
  }

  bool member(int depth) {
    if (!take_string(from_, leniency_)) return false;
    skip_space();
    return mark(':') && value(depth);
  }

  bool container(char close, bool has_keys, int depth) {
    if (depth > max_depth) return false;
    if (mark(close)) return true;
    do {
      if (leniency_.commas_before_brackets && from_.here() == close) break;
      if (!(has_keys ? member(depth) : value(depth))) return false;
    } while (mark(','));
    return mark(close);
  }

  bool scalar() {
    switch (from_.here()) {
      case '"':
        return take_string(from_, leniency_);
      case 't':
        return from_.take_word("true");
      case 'f':
        return from_.take_word("false");
      case 'n':
        return from_.take_word("null");
      default:
        return take_number(from_);
    }
  }

  // A value and the white space after it.
  bool value(int depth) {
    if (mark('{')) return container('}', true, depth + 1);
    if (mark('[')) return container(']', false, depth + 1);
    if (!scalar()) return false;
    skip_space();
    return true;
  }

  json_taker from_;
  const json_leniency& leniency_;
};

}  // namespace

strict_json to_strict_json(std::string_view text, const json_leniency& leniency) {
  return checker(text, leniency).run();
}
