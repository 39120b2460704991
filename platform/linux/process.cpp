#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <ctime>

#include "platform/linux/descriptor.h"
#include "platform/platform.h"

namespace platform {
namespace {

using clock = std::chrono::steady_clock;

// The capacity of a pipe. Each read costs a call and wakes the writer.
constexpr std::size_t input_buffer_size = std::size_t{64} * 1024;

void make_waiting(int fd) {
  const int flags = fcntl(fd, F_GETFL);
  if (flags >= 0) fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
}

// What a pipe takes that was ready, or empty, and to which so much has been written since. A write
// joins the one before if both fit a page. Bytes that are read meanwhile only make more room.
struct pipe_room {
  int fd = -1;
  std::size_t left = 0;   // of the page that was written to last
  std::size_t pages = 0;  // that nothing was written to yet

  bool take(std::size_t size) {
    if (size > left && (pages == 0 || size > PIPE_BUF)) return false;
    if (size > left) {
      --pages;
      left = PIPE_BUF;
    }
    left -= size;
    return true;
  }
};

// Whether a page of the pipe takes several writes, as it does unless they are packets.
bool joins_writes(int fd) { return (fcntl(fd, F_GETFL) & O_DIRECT) == 0; }

// Pages of a pipe; 0 for anything else.
std::size_t pipe_pages(int fd) {
  const int size = fcntl(fd, F_GETPIPE_SZ);
  return size > 0 ? static_cast<std::size_t>(size / sysconf(_SC_PAGESIZE)) : 0;
}

// poll reports a pipe that hangs up, but not how much is left in it, nor the end of a file. Those
// have to be asked for at intervals.
constexpr int asking_interval = 20;  // in milliseconds

// How many bytes can be read at once; 0 if unknown.
std::size_t unread_bytes(int fd) {
  int count = 0;
  return ioctl(fd, FIONREAD, &count) == 0 ? static_cast<std::size_t>(std::max(count, 0)) : 0;
}

bool is_known_empty(int fd) {
  int count = 0;
  return ioctl(fd, FIONREAD, &count) == 0 && count == 0;
}

bool is_file(int fd) {
  struct stat status = {};
  return fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

// A pipe is ready when a page of it is free: PIPE_BUF bytes, more than any frame. The input is
// watched for its end alone; its data is the main thread's business.
bool wait_until_ready(int output, input_question has_to_serve, std::chrono::milliseconds timeout) {
  pollfd streams[] = {{output, POLLOUT, 0}, {STDIN_FILENO, POLLRDHUP, 0}};
  bool ended = is_file(STDIN_FILENO);
  auto deadline = clock::time_point::max();
  while (clock::now() < deadline) {
    const int ready = poll(streams, ended ? 1 : 2, ended ? asking_interval : -1);
    if (ready < 0 && errno != EINTR) return true;
    if (ready > 0 && streams[0].revents != 0) return true;
    ended = ended || ready > 0;
    const bool over = ended && !has_to_serve(unread_bytes(STDIN_FILENO));
    deadline = over ? std::min(deadline, clock::now() + timeout) : clock::time_point::max();
  }
  return false;
}

struct {
  int exit_value;
  timespec deadline;
} end_of_process;

void* abandon_exit(void*) {
  const auto* const deadline = &end_of_process.deadline;
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, deadline, nullptr) == EINTR) continue;
  leave_now(end_of_process.exit_value);
}

// The thread starts with all signals blocked, so that no handler of a library can hold it up.
bool start_clock_thread() {
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  pthread_t thread = {};
  const bool started = pthread_create(&thread, nullptr, abandon_exit, nullptr) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (started) pthread_detach(thread);
  return started;
}

// For a process that can't start a thread. Uses the one signal that a library can't have turned
// off, which costs the exit value.
void start_fatal_timer() {
  sigevent event = {};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = SIGKILL;
  timer_t timer = nullptr;
  const itimerspec end = {{}, end_of_process.deadline};
  if (timer_create(CLOCK_MONOTONIC, &event, &timer) == 0) {
    timer_settime(timer, TIMER_ABSTIME, &end, nullptr);
  }
}

timespec time_after(std::chrono::milliseconds limit) {
  constexpr std::chrono::nanoseconds::rep second = 1'000'000'000;
  const auto end = std::chrono::nanoseconds((clock::now() + limit).time_since_epoch()).count();
  return {end / second, end % second};
}

}  // namespace

// Clearing the process's dumpable flag would also keep debuggers away, and any program of the same
// user that looks up the process under /proc, as an agent does that wants to know who has
// connected. So the limit forbids core files. A program that receives dumps through a pipe gets
// them whatever the limit says, so the dump filter leaves none of the process's memory in them.
void forbid_memory_dumps() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
  const descriptor filter(open("/proc/self/coredump_filter", O_WRONLY | O_CLOEXEC));
  (void)!write(filter.get(), "0", 1);
}

// Opening takes the lowest free number, so the loop goes upwards from 0.
void occupy_standard_streams() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) == -1 && errno == EBADF) (void)open("/dev/null", O_RDWR);
  }
}

// Streams are always binary here. By default a reader that has gone away, or a file that is full,
// ends the process by a signal; then the output side would decide how long the host lives.
void prepare_standard_streams() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  make_waiting(STDOUT_FILENO);
  make_waiting(STDIN_FILENO);
  static char input_buffer[input_buffer_size];
  std::setvbuf(stdin, input_buffer, _IOFBF, sizeof input_buffer);
}

bool wait_for_input(std::FILE* input) {
  pollfd stream = {fileno(input), POLLIN, 0};
  return poll(&stream, 1, -1) > 0 || errno == EINTR;
}

// These fields of the stream are the ones that the C library's own macros once used.
std::size_t read_ahead(std::FILE* input) {
  return static_cast<std::size_t>(input->_IO_read_end - input->_IO_read_ptr);
}

// Nothing is asked while a pipe has room for certain: all of it has if it was found empty, and one
// page if it was found ready.
bool wait_for_output(std::FILE* output, std::size_t size, input_question has_to_serve,
                     std::chrono::milliseconds timeout) {
  static pipe_room room;
  const int fd = fileno(output);
  if (room.fd == fd && room.take(size)) return true;
  room = {};
  const std::size_t pages = pipe_pages(fd);
  const bool is_empty = pages > 0 && is_known_empty(fd);
  if (!is_empty && !wait_until_ready(fd, has_to_serve, timeout)) return false;
  if (pages > 0 && joins_writes(fd)) {
    room = {fd, 0, is_empty ? pages : 1};
    room.take(size);
  }
  return true;
}

void end_process(int exit_value, std::chrono::milliseconds limit) {
  end_of_process = {exit_value, time_after(limit)};
  if (!start_clock_thread()) start_fatal_timer();
  std::exit(exit_value);
}

int forbid_cancellation() {
  int before = 0;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
  return before;
}

void allow_cancellation(int as_before) { pthread_setcancelstate(as_before, nullptr); }

// Not _exit: the thread sanitizer replaces it by one that flushes the streams first.
void leave_now(int exit_value) { std::_Exit(exit_value); }

}  // namespace platform
