#include "tools/examination_child.h"

#include <algorithm>
#include <cstdio>
#include <random>
#include <sstream>

#include "platform/child_process.h"
#include "tools/printable.h"

namespace {

constexpr char separator = '\t';
constexpr const char* severity_words[] = {"good", "note", "warning", "fault"};

// The library's own output is counted, not kept.
constexpr std::size_t longest_line = std::size_t{64} * 1024;

std::string new_mark() {
  std::random_device random;
  std::ostringstream text;
  text << '[' << std::hex << random() << random() << ']';
  return text.str();
}

std::vector<std::string> fields_of(const std::string& line) {
  std::vector<std::string> fields(1);
  for (const char c : line) {
    if (c == separator) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

severity severity_of(const std::string& word) {
  const auto* const found = std::find(std::begin(severity_words), std::end(severity_words), word);
  return static_cast<severity>(std::min<std::ptrdiff_t>(found - severity_words, 3));
}

// Collects what the child reports, line by line.
class listener {
 public:
  listener(std::string mark, child_account& told) : mark_(std::move(mark)), told_(told) {}

  void take(std::string_view bytes) {
    for (const char c : bytes) {
      if (c == '\n') {
        end_line();
      } else if (c != '\r') {
        line_ += c;
      }
      if (line_.size() > longest_line) end_line();
    }
  }

 private:
  // Text before the mark comes from the library, which needn't end its lines.
  void end_line() {
    const std::size_t at = line_.find(mark_);
    told_.foreign_bytes += at == std::string::npos ? line_.size() + 1 : at;
    if (at != std::string::npos) understand(fields_of(line_.substr(at + mark_.size())));
    line_.clear();
  }

  void understand(const std::vector<std::string>& fields) {
    if (fields.size() == 2 && fields[0] == "step") {
      told_.last_step = fields[1];
    } else if (fields.size() == 5 && fields[0] == "entry") {
      told_.entries.push_back({"", severity_of(fields[1]), fields[2], fields[3], fields[4]});
    } else if (fields[0] == "done") {
      told_.is_done = true;
    }
  }

  const std::string mark_;
  child_account& told_;
  std::string line_;
};

}  // namespace

void account::tell(const std::string& line) {
  std::fputs((mark_ + line + '\n').c_str(), stdout);
  std::fflush(stdout);
}

void account::step(const std::string& name) {
  const std::lock_guard<std::mutex> lock(mutex_);
  tell("step" + (separator + printable_line(name)));
}

void account::add(severity weight, const char* id, const std::string& text,
                  const std::string& advice) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (!told_.insert(id + text).second) return;
  std::string line = "entry";
  for (const std::string& field :
       {std::string(severity_words[static_cast<int>(weight)]), std::string(id), text, advice}) {
    line += separator + printable_line(field);
  }
  tell(line);
}

void account::done() {
  const std::lock_guard<std::mutex> lock(mutex_);
  tell("done");
}

bool child_account::has_faults() const {
  return std::any_of(entries.begin(), entries.end(),
                     [](const report_entry& entry) { return entry.weight == severity::fault; });
}

child_account run_examination(const std::string& program, std::vector<std::string> arguments,
                              std::chrono::milliseconds timeout) {
  child_account told;
  const std::string mark = new_mark();
  arguments.push_back(mark);
  const auto child = platform::child_process::start(program, arguments, told.error);
  if (child == nullptr) return told;
  child->close_input();
  listener ear(mark, told);
  char block[4096];
  std::optional<std::size_t> count;
  while ((count = child->read(block, sizeof block, timeout)).value_or(0) > 0) {
    ear.take({block, *count});
  }
  const bool output_ended = count.has_value();
  told.exit_value = child->wait(output_ended ? timeout : std::chrono::milliseconds(0));
  return told;
}

std::optional<report_entry> judge_end(const child_account& child, const std::string& library,
                                      std::chrono::milliseconds timeout) {
  const auto fault = [](const char* id, std::string text, std::string advice) {
    return report_entry{"", severity::fault, id, std::move(text), std::move(advice)};
  };
  const std::string where = " in " + child.last_step;
  if (!child.error.empty()) {
    return fault("not-examined", library + " couldn't be examined: " + child.error,
                 "Install cfhost again.");
  }
  if (!child.exit_value.has_value()) {
    return fault("library-hangs",
                 library + " took longer than " + std::to_string(timeout.count()) + " ms" + where,
                 "It must come back at once: work that takes time belongs on a thread of its own.");
  }
  const std::string crash = platform::crash_of(*child.exit_value);
  if (!crash.empty()) {
    return fault(
        "library-crashes", library + " crashed" + where + ": " + crash,
        "Update it; as its author run cfcheck in a debugger that follows child processes.");
  }
  if (!child.is_done || *child.exit_value != 0) {
    return fault("library-ends-process",
                 library + " ended the process" + where + ", with exit value " +
                     std::to_string(*child.exit_value),
                 "A library must leave the end to the host.");
  }
  return std::nullopt;
}
