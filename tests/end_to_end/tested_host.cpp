#include "tests/end_to_end/tested_host.h"

#include <chrono>
#include <fstream>
#include <random>
#include <stdexcept>
#include <thread>

namespace {

namespace fs = std::filesystem;

// More than anything takes that works, even with sanitizers on a busy machine.
constexpr std::chrono::seconds timeout{20};

constexpr std::size_t largest_envelope = 512;

}  // namespace

std::string hex(std::u16string_view form) {
  std::string bytes;
  for (const char16_t u : form) bytes += {static_cast<char>(u), static_cast<char>(u >> 8)};
  return to_hex(bytes);
}

std::string posted(const std::string& name, std::u16string_view form) {
  return "post msg::" + name + " 1 " + hex(form) + " 0";
}

std::string request(std::string_view json) {
  std::string envelope;
  request_cutter(json, "r", max_request_envelope).next(envelope);
  return make_frame(envelope);
}

fs::path make_folder() {
  const std::string name = "cfhost-test-" + std::to_string(std::random_device()());
  fs::path folder = fs::temp_directory_path() / name;
  fs::create_directory(folder);
  return folder;
}

outcome run_program(const std::string& program, const lines& arguments) {
  outcome result;
  const auto run = platform::child_process::start(program, arguments, result.text);
  if (run == nullptr) return result;
  run->close_input();
  char block[4096];
  while (const std::size_t count = run->read(block, sizeof block, run->forever).value_or(0)) {
    result.text.append(block, count);
  }
  // Some systems end a line with two characters.
  std::erase(result.text, '\r');
  result.exit_value = run->wait(run->forever).value_or(-1);
  return result;
}

tested_host::tested_host(const std::string& script, const std::string& library,
                         const lines& arguments)
    : splitter_(largest_envelope) {
  const fs::path program = folder_ / HOST_NAME;
  fs::copy_file(HOST_PROGRAM, program);
  if (!library.empty()) fs::copy_file(library, folder_ / LIBRARY_NAME);
  std::ofstream(folder_ / "script") << script;
  std::string error;
  process_ = platform::child_process::start(program.string(), arguments, error);
  if (process_ == nullptr) throw std::runtime_error(error);
}

tested_host::~tested_host() {
  process_.reset();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

bool tested_host::send(std::string_view bytes) {
  return process_->write(bytes.data(), bytes.size(), timeout);
}

int tested_host::finish() {
  process_->close_input();
  return process_->wait(timeout).value_or(-1);
}

std::optional<std::string> tested_host::next_frame() {
  for (;;) {
    if (auto envelope = splitter_.next()) return envelope;
    char block[4096];
    const std::size_t count = process_->read(block, sizeof block, timeout).value_or(0);
    if (count == 0 || splitter_.out_of_step()) return std::nullopt;
    splitter_.feed({block, count});
  }
}

lines tested_host::replies(std::size_t count) {
  lines texts;
  std::string text, error = "end";
  for (parsed_envelope e; texts.size() < count;) {
    const auto frame = next_frame();
    if (!frame && joiner_.unfinished() > 0) error = "end inside a reply";
    const bool readable = frame && parse_envelope(*frame, e, error);
    const auto joined = readable ? joiner_.add(e, text, error) : join_result::refused;
    if (joined == join_result::complete) texts.push_back(text);
    if (joined != join_result::refused) continue;
    texts.push_back(error + splitter_.complaint());
    break;
  }
  return texts;
}

lines tested_host::report(std::size_t count) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    lines found;
    std::ifstream file(folder_ / "report");
    for (std::string line; std::getline(file, line);) found.push_back(line);
    if (found.size() >= count || std::chrono::steady_clock::now() > end) return found;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}
