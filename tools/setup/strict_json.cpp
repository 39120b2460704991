#include "tools/setup/strict_json.h"

namespace {

constexpr int max_depth = 100;

class checker {
 public:
  explicit checker(std::string_view text) : text_(text) {}

  std::optional<std::size_t> fault() {
    skip_space();
    if (value(0) && at_ == text_.size()) return std::nullopt;
    return at_;
  }

 private:
  char here() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  void skip_space() {
    while (here() == ' ' || here() == '\t' || here() == '\n' || here() == '\r') ++at_;
  }

  bool take(char c) {
    if (here() != c) return false;
    ++at_;
    return true;
  }

  // A punctuation mark and the white space behind it.
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
    while (here() >= '0' && here() <= '9') ++at_;
    return at_ > start;
  }

  bool number() {
    take('-');
    if (!take('0') && !digits()) return false;
    if (take('.') && !digits()) return false;
    if (take('e') || take('E')) {
      if (!take('+')) take('-');
      return digits();
    }
    return true;
  }

  bool escape() {
    if (take('u')) {
      for (int i = 0; i < 4; ++i, ++at_) {
        const char c = here();
        if ((c < '0' || c > '9') && (c < 'a' || c > 'f') && (c < 'A' || c > 'F')) return false;
      }
      return true;
    }
    constexpr std::string_view simple = "\"\\/bfnrt";
    if (here() == '\0' || simple.find(here()) == std::string_view::npos) return false;
    ++at_;
    return true;
  }

  bool string() {
    if (!take('"')) return false;
    while (!take('"')) {
      if (static_cast<unsigned char>(here()) < 0x20) return false;
      if (take('\\') ? !escape() : !take(here())) return false;
    }
    return true;
  }

  bool member(int depth) {
    if (!string()) return false;
    skip_space();
    return mark(':') && value(depth);
  }

  bool container(char close, bool has_keys, int depth) {
    if (mark(close)) return true;
    do {
      if (depth > max_depth || !(has_keys ? member(depth) : value(depth))) return false;
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

  // A value and the white space behind it.
  bool value(int depth) {
    if (mark('{')) return container('}', true, depth + 1);
    if (mark('[')) return container(']', false, depth + 1);
    if (!scalar()) return false;
    skip_space();
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::optional<std::size_t> find_json_fault(std::string_view text) { return checker(text).fault(); }
