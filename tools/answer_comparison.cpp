#include "tools/answer_comparison.h"

#include <algorithm>
#include <cstddef>

namespace {

// How much is shown before and from the first byte that differs.
constexpr std::size_t bytes_before = 30;
constexpr std::size_t bytes_shown = 80;

// The name of the first member, which names the notification.
std::string name_of(const std::string& text) {
  const std::size_t end = text.starts_with("{\"") ? text.find('"', 2) : std::string::npos;
  return end == std::string::npos ? "other" : text.substr(2, end - 2);
}

std::string difference(const std::string& recorded, const std::string& received) {
  const auto differs =
      std::mismatch(recorded.begin(), recorded.end(), received.begin(), received.end());
  const auto offset = static_cast<std::size_t>(differs.first - recorded.begin());
  const std::size_t from = offset - std::min(offset, bytes_before);
  return "differs: recorded ..." + recorded.substr(from, bytes_shown) + "..., now ..." +
         received.substr(from, bytes_shown) + "...";
}

}  // namespace

void answer_comparison::add(const std::string& message, std::vector<std::string> answers::*list) {
  std::string error;
  const std::string text = message_text(message, rules_, error).value_or(error);
  (by_kind_[name_of(text)].*list).push_back(text);
}

std::vector<std::string> answer_comparison::differences() const {
  std::vector<std::string> found;
  for (const auto& [kind, of] : by_kind_) {
    const std::size_t recorded = of.recorded.size(), received = of.received.size();
    for (std::size_t i = 0; i < std::max(recorded, received); ++i) {
      const std::string which = kind + " " + std::to_string(i + 1) + ' ';
      if (i >= recorded) {
        found.push_back(which + "wasn't recorded: " + of.received[i].substr(0, bytes_shown));
      } else if (i >= received) {
        found.push_back(which + "doesn't come: " + of.recorded[i].substr(0, bytes_shown));
      } else if (of.recorded[i] != of.received[i]) {
        found.push_back(which + difference(of.recorded[i], of.received[i]));
      }
    }
  }
  return found;
}
