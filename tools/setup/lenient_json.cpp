#include "tools/setup/lenient_json.h"

#include <cmath>
#include <cstdlib>

namespace {

constexpr int max_depth = 199;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

class checker {
 public:
  checker(std::string_view text, const json_leniency& leniency)
      : text_(text), leniency_(leniency) {}

  strict_json run() {
    if (text_.starts_with(byte_order_mark)) at_ = byte_order_mark.size();
    skip_space();
    if (value(0) && at_ == text_.size()) return {std::move(out_), std::nullopt};
    return {{}, at_};
  }

 private:
  char here() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  bool comment_starts(std::string_view mark) const {
    return leniency_.comments && text_.substr(at_).starts_with(mark);
  }

  // An unterminated comment is left in place and becomes the fault.
  bool skip_comment(std::string_view start, std::string_view end, bool ends_with_text) {
    if (!comment_starts(start)) return false;
    const std::size_t stop = text_.find(end, at_ + start.size());
    if (stop == std::string_view::npos && !ends_with_text) return false;
    at_ = stop == std::string_view::npos ? text_.size() : stop + end.size();
    return true;
  }

  void skip_space() {
    do {
      while (here() == ' ' || here() == '\t' || here() == '\n' || here() == '\r') ++at_;
    } while (skip_comment("//", "\n", true) || skip_comment("/*", "*/", false));
  }

  bool take(char c) {
    if (at_ == text_.size() || here() != c) return false;
    out_ += c;
    ++at_;
    return true;
  }

  // A punctuation mark and the white space after it.
  bool mark(char c) {
    if (!take(c)) return false;
    skip_space();
    return true;
  }

  bool word(std::string_view expected) {
    for (const char c : expected) {
      if (!take(c)) return false;
    }
    return true;
  }

  bool digits() {
    const std::size_t start = at_;
    while (here() >= '0' && here() <= '9') take(here());
    return at_ > start;
  }

  bool number_form() {
    take('-');
    if (!take('0') && !digits()) return false;
    if (take('.') && !digits()) return false;
    if (take('e') || take('E')) {
      if (!take('+')) take('-');
      return digits();
    }
    return true;
  }

  bool number() {
    const std::size_t start = out_.size();
    return number_form() && std::isfinite(std::strtod(out_.c_str() + start, nullptr));
  }

  // The value of `count` hexadecimal digits; -1 if there are fewer.
  int hexadecimal(int count) {
    int code = 0;
    for (; count > 0; --count, ++at_) {
      const char c = here();
      const int digit = c >= '0' && c <= '9'   ? c - '0'
                        : c >= 'a' && c <= 'f' ? c - 'a' + 10
                        : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                               : -1;
      if (digit < 0) return -1;
      code = code * 16 + digit;
    }
    return code;
  }

  // NUL would end the text for the parser, so it is replaced by a character that no name contains.
  void put_escape(int code) {
    constexpr char digits[] = "0123456789abcdef";
    if (code == 0) code = 0xFFFD;
    out_ += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) out_ += digits[code >> shift & 0xF];
  }

  bool skip(std::string_view expected) {
    if (!text_.substr(at_).starts_with(expected)) return false;
    at_ += expected.size();
    return true;
  }

  bool wide_escape() {
    const int code = hexadecimal(4);
    if (code < 0) return false;
    put_escape(code);
    if (leniency_.lone_surrogates || (code & 0xF800) != 0xD800) return true;
    if ((code & 0x400) != 0 || !skip("\\u")) return false;
    const int second = hexadecimal(4);
    put_escape(second);
    return (second & 0xFC00) == 0xDC00;
  }

  // The part after the backslash.
  bool escape() {
    if (skip("u")) return wide_escape();
    if (leniency_.hex_escapes && skip("x")) {
      const int code = hexadecimal(2);
      put_escape(code);
      return code >= 0;
    }
    constexpr std::string_view simple = "\"\\/bfnrt";
    if (here() == '\0' || simple.find(here()) == std::string_view::npos) return false;
    out_ += '\\';
    return take(here());
  }

  bool string_character() {
    if (skip("\\")) return escape();
    const auto code = static_cast<unsigned char>(here());
    if (code >= 0x20) return take(here());
    if (!leniency_.line_ends_in_strings || (code != '\n' && code != '\r')) return false;
    put_escape(code);
    ++at_;
    return true;
  }

  bool string() {
    if (!take('"')) return false;
    while (!take('"')) {
      if (!string_character()) return false;
    }
    return true;
  }

  bool member(int depth) {
    if (!string()) return false;
    skip_space();
    return mark(':') && value(depth);
  }

  bool container(char close, bool has_keys, int depth) {
    if (depth > max_depth) return false;
    if (mark(close)) return true;
    do {
      if (leniency_.commas_before_brackets && here() == close) break;
      if (!(has_keys ? member(depth) : value(depth))) return false;
    } while (mark(','));
    return mark(close);
  }

  bool scalar() {
    switch (here()) {
      case '"':
        return string();
      case 't':
        return word("true");
      case 'f':
        return word("false");
      case 'n':
        return word("null");
      default:
        return number();
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

  const std::string_view text_;
  const json_leniency& leniency_;
  std::size_t at_ = 0;
  std::string out_;
};

}  // namespace

strict_json to_strict_json(std::string_view text, const json_leniency& leniency) {
  return checker(text, leniency).run();
}
