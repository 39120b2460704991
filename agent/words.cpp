#include "agent/words.h"

#include <algorithm>
#include <vector>

#include "agent/letters.h"
#include "agent/word_lists.h"

namespace {

constexpr std::size_t longest_searched = 120;

// A text without its word separators, and where its words begin.
struct searched_text {
  wide_string letters;
  std::vector<bool> begins;  // for each letter, and true after the last one
};

enum class letter_class { separator, digit, small, capital, ideograph };

letter_class class_of(wide_char c) {
  if (c >= u'0' && c <= u'9') return letter_class::digit;
  if (c >= 0x2E80) return letter_class::ideograph;
  if (small_letter(c) != c) return letter_class::capital;
  const bool is_letter = (c >= u'a' && c <= u'z') || (c >= 0xC0 && c < 0x2000);
  return is_letter ? letter_class::small : letter_class::separator;
}

// In "userName" and "e1" words touch. In scripts without blanks a word may begin anywhere.
bool begins_word(letter_class before, letter_class now) {
  if (now == letter_class::ideograph || before == letter_class::ideograph) return true;
  return before != now && !(before == letter_class::capital && now == letter_class::small);
}

searched_text searched(wide_view text) {
  searched_text result;
  letter_class before = letter_class::separator;
  for (const wide_char c : text) {
    const letter_class now = class_of(c);
    if (now != letter_class::separator) {
      result.begins.push_back(begins_word(before, now));
      result.letters.push_back(plain_letter(c));
    }
    before = now;
  }
  result.begins.push_back(true);
  return result;
}

// The letters as bits, some of which stand for several letters. A word whose bits aren't all in the
// text isn't in the text either.
std::uint64_t letter_set(wide_view text) {
  std::uint64_t set = 0;
  for (const wide_char c : text) set |= std::uint64_t{1} << (c % 64);
  return set;
}

struct searched_word {
  meaning means;
  wide_view letters;
  std::uint64_t set;
  bool at_begin;  // whether a word of the text must begin there
  bool at_end;
};

searched_word make_word(meaning means, wide_view written) {
  searched_word word{means, written, 0, written.front() == u'_', written.back() == u'_'};
  if (word.at_begin) word.letters.remove_prefix(1);
  if (word.at_end) word.letters.remove_suffix(1);
  word.set = letter_set(word.letters);
  return word;
}

std::vector<searched_word> make_words() {
  std::vector<searched_word> words;
  for (const word_list& list : word_lists()) {
    for (wide_view rest = list.words; !rest.empty();) {
      const std::size_t end = std::min(rest.find(u' '), rest.size());
      words.push_back(make_word(list.means, rest.substr(0, end)));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  return words;
}

bool contains(const searched_text& text, const searched_word& word, bool only_at_begin) {
  const bool at_begin = only_at_begin || word.at_begin;
  for (std::size_t at = text.letters.find(word.letters); at != wide_string::npos;
       at = text.letters.find(word.letters, at + 1)) {
    if (at_begin && !text.begins[at]) continue;
    if (!word.at_end || text.begins[at + word.letters.size()]) return true;
  }
  return false;
}

meanings meanings_of(wide_view raw, bool only_at_begin) {
  static const std::vector<searched_word> words = make_words();
  const searched_text text = searched(raw);
  const std::uint64_t set = letter_set(text.letters);
  meanings found = 0;
  for (const searched_word& word : words) {
    if ((found & word.means) != 0 || (word.set & ~set) != 0) continue;
    if (contains(text, word, only_at_begin)) found |= word.means;
  }
  return found;
}

}  // namespace

meanings meanings_of_name(wide_view name) {
  if (name.size() > longest_searched) name.remove_prefix(name.size() - longest_searched);
  return meanings_of(name, false);
}

meanings meanings_of_text(wide_view text) {
  return meanings_of(text.substr(0, longest_searched), true);
}
