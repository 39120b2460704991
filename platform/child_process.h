// Child processes with pipes, for the companion programs and the tests. The host starts none.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// What becomes of an executable file that is no program and names no interpreter. Where they are
// run, the shell does it, as many programs leave it to; Windows has no such custom.
enum class bare_scripts { are_refused, are_run };

// A started program whose standard input and output are pipes of ours; its standard error is
// shared. The destructor ends the process and waits for it. One thread may write while another
// reads; all other calls are for one thread at a time, and a side may be closed only while nobody
// uses it.
class child_process {
 public:
  static constexpr std::chrono::milliseconds forever = std::chrono::milliseconds::max();

  // Starts `program`, a path that is not searched for, with `arguments` after its name. Null, with
  // the reason in `error`, if it can't be started (no such file, not executable). From the first
  // call on, writing to a child that has closed its input fails instead of ending this process, and
  // the end of a child is reported even if this process was started so as to ignore it. The child
  // itself starts with the default answers to all signals.
  static std::unique_ptr<child_process> start(const std::string& program,
                                              const std::vector<std::string>& arguments,
                                              std::string& error,
                                              bare_scripts scripts = bare_scripts::are_refused);
  virtual ~child_process() = default;

  // Writes all bytes to the child's input. False if the child has closed it, or has taken nothing
  // for `timeout`; some of the bytes may have been written then.
  virtual bool write(const void* bytes, std::size_t size,
                     std::chrono::milliseconds timeout = forever) = 0;
  virtual void close_input() = 0;

  // Reads up to `size` bytes of the child's output, waiting up to `timeout` for the first one.
  // Returns the count, 0 at the end of the output, or nothing if the time ran out.
  virtual std::optional<std::size_t> read(void* bytes, std::size_t size,
                                          std::chrono::milliseconds timeout) = 0;
  virtual void close_output() = 0;

  // The exit value once the child has ended by itself, or nothing if it hasn't within `timeout`. A
  // child that died of a signal gives 128 plus the signal's number.
  virtual std::optional<int> wait(std::chrono::milliseconds timeout) = 0;

  // Processor time that the child has used, once it has been waited for; 0 before.
  virtual std::chrono::microseconds cpu_time() const = 0;

  virtual std::int64_t process_id() const = 0;
  virtual void kill() = 0;
};

// Names the crash that an exit value stands for: "signal 11 (Segmentation fault)". Empty for a
// value that programs return by themselves.
std::string crash_of(int exit_value);

// For a child that runs code which may crash: a crash ends it at once, with a value that crash_of
// knows, and without dumps, dialogs or debuggers.
void crash_quietly();

}  // namespace platform
