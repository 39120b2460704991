#include "platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <thread>
#include <utility>

#include "platform/linux/descriptor.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How often a child is polled while it is waited for.
constexpr milliseconds wait_step{1};

struct pipe_ends {
  descriptor reading;
  descriptor writing;
};

// Keeps an end clear of the standard streams, which the child's ends are moved onto one by one.
descriptor above_standard_streams(descriptor end) {
  if (!end.valid() || end.get() > STDERR_FILENO) return end;
  return descriptor(fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

bool make_pipe(pipe_ends& ends) {
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) return false;
  ends.reading = above_standard_streams(descriptor(fds[0]));
  ends.writing = above_standard_streams(descriptor(fds[1]));
  return ends.reading.valid() && ends.writing.valid();
}

// The timeout for poll: what is left until `timeout` after `start`.
int poll_time(steady_clock::time_point start, milliseconds timeout) {
  if (timeout == child_process::forever) return -1;
  const auto gone = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  const auto left = std::clamp<milliseconds::rep>((timeout - gone).count(), 0, INT_MAX);
  return static_cast<int>(left);
}

// True when `fd` is ready for `events`, or broken; the next transfer shows which.
bool wait_ready(int fd, short events, milliseconds timeout) {
  const auto start = steady_clock::now();
  pollfd request{fd, events, 0};
  int ready = 0;
  do {
    ready = poll(&request, 1, poll_time(start, timeout));
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

class linux_child final : public child_process {
 public:
  linux_child(pid_t id, descriptor input, descriptor output)
      : id_(id), input_(std::move(input)), output_(std::move(output)) {}

  ~linux_child() override {
    close_input();
    close_output();
    kill();
    (void)wait(forever);
  }

  bool write(const void* bytes, std::size_t size, milliseconds timeout) override {
    auto* at = static_cast<const char*>(bytes);
    const char* const end = at + size;
    while (at != end) {
      const ssize_t count = ::write(input_.get(), at, static_cast<std::size_t>(end - at));
      if (count >= 0) {
        at += count;
      } else if (errno == EAGAIN) {
        if (!wait_ready(input_.get(), POLLOUT, timeout)) return false;
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

  void close_input() override { input_.close(); }

  std::optional<std::size_t> read(void* bytes, std::size_t size, milliseconds timeout) override {
    if (!wait_ready(output_.get(), POLLIN, timeout)) return std::nullopt;
    ssize_t count = 0;
    do {
      count = ::read(output_.get(), bytes, size);
    } while (count < 0 && errno == EINTR);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
  }

  void close_output() override { output_.close(); }

  std::optional<int> wait(milliseconds timeout) override {
    const auto start = steady_clock::now();
    for (;;) {
      look();
      if (exit_value_.has_value() || poll_time(start, timeout) == 0) return exit_value_;
      std::this_thread::sleep_for(wait_step);
    }
  }

  std::chrono::microseconds cpu_time() const override { return cpu_time_; }

  std::int64_t process_id() const override { return id_; }

  // Once the child has been waited for, its number may belong to somebody else.
  void kill() override {
    if (!exit_value_.has_value()) ::kill(id_, SIGKILL);
  }

 private:
  void look() {
    if (exit_value_.has_value()) return;
    int status = 0;
    rusage used = {};
    if (wait4(id_, &status, WNOHANG, &used) != id_) return;
    for (const timeval& part : {used.ru_utime, used.ru_stime}) {
      cpu_time_ += std::chrono::seconds(part.tv_sec) + std::chrono::microseconds(part.tv_usec);
    }
    exit_value_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }

  const pid_t id_;
  descriptor input_;
  descriptor output_;
  std::optional<int> exit_value_;
  std::chrono::microseconds cpu_time_{0};
};

// The attributes and actions of one start, released at the end of its scope.
struct spawn_settings {
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;

  spawn_settings(int input, int output) {
    sigset_t signals;
    posix_spawnattr_init(&attributes);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  }
  ~spawn_settings() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  spawn_settings(const spawn_settings&) = delete;
  spawn_settings& operator=(const spawn_settings&) = delete;
};

// Returns the error number, 0 on success. A program that can't be executed is an error here too:
// the call returns only when the child has become the program.
int spawn(pid_t& id, const std::string& program, std::vector<std::string> arguments, int input,
          int output) {
  arguments.insert(arguments.begin(), program);
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  const spawn_settings settings(input, output);
  return posix_spawn(&id, program.c_str(), &settings.actions, &settings.attributes, pointers.data(),
                     environ);
}

}  // namespace

std::unique_ptr<child_process> child_process::start(const std::string& program,
                                                    const std::vector<std::string>& arguments,
                                                    std::string& error, bare_scripts scripts) {
  std::signal(SIGPIPE, SIG_IGN);
  // A process that ignores this signal, as some parents leave it to their children, is never told
  // of a child's end.
  std::signal(SIGCHLD, SIG_DFL);
  pipe_ends input;
  pipe_ends output;
  if (!make_pipe(input) || !make_pipe(output) ||
      fcntl(input.writing.get(), F_SETFL, O_NONBLOCK) != 0) {
    error = std::string("can't make a pipe: ") + std::strerror(errno);
    return nullptr;
  }
  pid_t id = -1;
  int failure = spawn(id, program, arguments, input.reading.get(), output.writing.get());
  if (failure == ENOEXEC && scripts == bare_scripts::are_run) {
    std::vector<std::string> of_shell = arguments;
    of_shell.insert(of_shell.begin(), program);
    failure = spawn(id, "/bin/sh", std::move(of_shell), input.reading.get(), output.writing.get());
  }
  if (failure != 0) {
    // The system says of the interpreter what it says of the file.
    const bool lacks_interpreter = failure == ENOENT && access(program.c_str(), F_OK) == 0;
    error = "can't start " + program + ": " +
            (lacks_interpreter ? "what its first line names isn't there, or that line ends with CR"
                               : std::strerror(failure));
    return nullptr;
  }
  return std::make_unique<linux_child>(id, std::move(input.writing), std::move(output.reading));
}

std::string crash_of(int exit_value) {
  const int number = exit_value - 128;
  if (number <= 0 || number >= NSIG) return {};
  return "signal " + std::to_string(number) + " (" + strsignal(number) + ")";
}

// Sanitizers have handlers of their own, which would turn a crash into an ordinary exit.
void crash_quietly() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
  for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) std::signal(signal, SIG_DFL);
}

}  // namespace platform
