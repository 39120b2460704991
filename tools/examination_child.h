// A library is examined in a child process, which it may crash or hang. The child reports each step
// before it takes it, so the last one reported is the one that it died in.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/report.h"

// The child's side. Any thread may call.
class account {
 public:
  // `mark` begins each line, since the library may write to the same output.
  explicit account(std::string mark) : mark_(std::move(mark)) {}

  // Names the next step, with a noun: "addObserver".
  void step(const std::string& name);

  // Reports a finding once, however often it is added.
  void add(severity weight, const char* id, const std::string& text, const std::string& advice);

  // The examination is over. The steps that follow end the process.
  void done();

 private:
  void tell(const std::string& line);

  const std::string mark_;
  std::mutex mutex_;
  std::set<std::string> told_;
};

// What the parent knows about a child in the end.
struct child_account {
  std::vector<report_entry> entries;
  std::string last_step;
  std::string error;              // why it couldn't be started
  std::optional<int> exit_value;  // nothing if it was killed because it was silent for too long
  bool is_done = false;
  std::size_t foreign_bytes = 0;  // output between its lines

  bool has_faults() const;
};

// Starts `program` with these arguments and a mark after them, and listens until it ends. Kills it
// if nothing was reported for as long as `timeout`.
child_account run_examination(const std::string& program, std::vector<std::string> arguments,
                              std::chrono::milliseconds timeout);

// What the child's end says about the library; nothing if it ended as it should.
std::optional<report_entry> judge_end(const child_account& child, const std::string& library,
                                      std::chrono::milliseconds timeout);
