#include "platform/raw_streams.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

#include "platform/linux/descriptor.h"

namespace platform {
namespace {

// Whether a failed transfer is worth another try. A program that shares the stream may have made it
// non-blocking.
bool can_go_on(int fd, short events) {
  if (errno == EINTR) return true;
  pollfd stream = {fd, events, 0};
  return errno == EAGAIN && (poll(&stream, 1, -1) >= 0 || errno == EINTR);
}

// Keeps the number taken: a file that is opened later must not take the stream's place.
void replace_by_nothing(int fd) {
  const descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  if (!nothing.valid() || dup2(nothing.get(), fd) < 0) close(fd);
}

// Not the lowest priority of all: the recording must not fall behind for good.
constexpr int politeness = 10;

std::atomic<pid_t> heir{0};
static_assert(std::atomic<pid_t>::is_always_lock_free);

extern "C" void pass_on(int signal) {
  const int error = errno;
  kill(heir, signal);
  errno = error;
}

}  // namespace

std::size_t read_standard_input(void* bytes, std::size_t size) {
  for (;;) {
    const ssize_t count = read(STDIN_FILENO, bytes, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (!can_go_on(STDIN_FILENO, POLLIN)) return 0;
  }
}

bool write_standard_output(const void* bytes, std::size_t size) {
  const auto* at = static_cast<const char*>(bytes);
  const char* const end = at + size;
  while (at != end) {
    const ssize_t count = write(STDOUT_FILENO, at, static_cast<std::size_t>(end - at));
    if (count >= 0) {
      at += count;
    } else if (!can_go_on(STDOUT_FILENO, POLLOUT)) {
      return false;
    }
  }
  return true;
}

void close_standard_input() { replace_by_nothing(STDIN_FILENO); }
void close_standard_output() { replace_by_nothing(STDOUT_FILENO); }

void pass_on_end_requests(std::int64_t process_id) {
  heir = static_cast<pid_t>(process_id);
  struct sigaction action = {};
  action.sa_handler = pass_on;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) sigaction(signal, &action, nullptr);
}

// On Linux a thread has its own priority, whatever the standard says.
void give_way() { setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), politeness); }

}  // namespace platform
