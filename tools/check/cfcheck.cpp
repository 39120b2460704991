// Plays the host to a client library and reports what is wrong with it.

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/child_process.h"
#include "tools/check/check_options.h"
#include "tools/check/host_play.h"
#include "tools/load_examination.h"

namespace {

constexpr char child_command[] = "--play-host";

enum exit_value {
  exit_good = 0,
  exit_fault = 1,
};

std::string absolute(const std::string& path) {
  std::error_code failure;
  const auto whole = std::filesystem::absolute(path, failure);
  return failure ? path : whole.lexically_normal().string();
}

void look_at_output(const child_account& child, const std::string& library, report& out) {
  if (child.foreign_bytes == 0) return;
  out.add({"", severity::fault, "writes-output",
           library + " writes to standard output, which carries the host's frames to the browser",
           "Write to standard error, or to a file."});
}

report examine(const check_options& options) {
  report out("check", nullptr);
  const std::string library = absolute(options.library);
  const std::string program = own_program("cfcheck");
  if (auto fault = fault_of_file(library, program)) return out.add(std::move(*fault)), out;

  const std::string wait = std::to_string(options.wait.count());
  const child_account child =
      run_examination(program, {child_command, library, wait}, options.timeout);
  for (const report_entry& entry : child.entries) out.add(entry);
  look_at_output(child, library, out);
  if (auto fault = judge_end(child, library, options.timeout)) out.add(std::move(*fault));
  if (!out.has_faults())
    out.add(
        {"", severity::good, "library-good", library + " does what the host expects of it", {}});
  return out;
}

// Doesn't return if this process was started as the child that does the dangerous part.
void serve_as_child(int argc, char** argv) {
  if (argc != 5 || argv[1] != std::string(child_command)) return;
  platform::crash_quietly();
  static account told(argv[4]);
  play_host(argv[2], std::chrono::milliseconds(std::atoi(argv[3])), told);
}

}  // namespace

int main(int argc, char** argv) {
  serve_as_child(argc, argv);
  check_options options;
  if (const auto value = parse_check_options(argc, argv, options)) return *value;
  const report found = examine(options);
  const std::string text = options.json ? found.as_json() : found.as_text();
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    std::fputs("cfcheck: can't write to standard output\n", stderr);
    return exit_fault;
  }
  return found.has_faults() ? exit_fault : exit_good;
}
