// What only this system has: pipes that tell how much room they have, and a debugger output that
// goes to a place in the file system, where others might write too.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "platform/linux/debug_address.h"
#include "tests/end_to_end/system_fixture.h"
#include "tests/end_to_end/tested_host.h"

using namespace std::literals;

namespace {

// A notification of several frames.
const std::string stuck_url = hex(u"msg::CfMsgOpenUrl\0\0"s + std::u16string(1000, u'x') + u"?\0"s);
const std::string lock_request = request(R"({"method":"lock-coffer"})");

}  // namespace

TEST(lifecycle, ends_in_time_while_many_threads_are_stuck) {
  for (const char* const when : {"post", "register"}) {
    tested_host host(when + " threads 16 1000000 "s + stuck_url);
    host.send(lock_request);
    ASSERT_TRUE(host.next_frame());
    std::this_thread::sleep_for(500ms);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(host.finish(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
  }
}

// With a reader that keeps up, threads enter, send and leave while the host ends around them.
// Running it with more ends than the default shows how rarely something is lost.
TEST(lifecycle, ends_in_the_middle_of_notifications) {
  const char* const wanted = std::getenv("CFHOST_TEST_ENDS");
  const int ends = wanted != nullptr ? std::atoi(wanted) : 20;
  std::chrono::steady_clock::duration longest{};
  for (int round = 0; round < ends; ++round) {
    tested_host host("quiet\nregister threads 8 2000000000 " + stuck_url + "\npost deliver data");
    std::string last;
    host.replies(20);
    std::thread reader([&] { last = host.replies(SIZE_MAX).back(); });
    for (int i = 0; i < round % 10; ++i) host.send(lock_request);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(host.finish(), 0);
    longest = std::max(longest, std::chrono::steady_clock::now() - start);
    reader.join();
    EXPECT_EQ(last, "end") << "round " << round;
  }
  EXPECT_LT(longest, 1s);
  std::cout << "longest end: " << std::chrono::duration<double>(longest).count() << " s\n";
}

TEST(lifecycle, goes_on_when_its_input_stops_to_wait) {
  namespace fs = std::filesystem;
  const fs::path folder = make_folder(), host = folder / HOST_NAME;
  fs::copy_file(HOST_PROGRAM, host);
  fs::copy_file(PROBE_LIBRARY, folder / LIBRARY_NAME);
  std::ofstream(folder / "script") << "post deliver " << hex(u"msg::CfMsgOpenUrl\0\0?\0"s);
  int ends[2] = {};
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  fcntl(ends[0], F_SETFD, 0);
  std::string error;
  const auto process = platform::child_process::start(
      "/bin/sh", {"-c", "exec \"$0\" <&" + std::to_string(ends[0]), host.string()}, error);
  ASSERT_NE(process, nullptr) << error;
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(write(ends[1], lock_request.data(), lock_request.size()), std::ssize(lock_request));
    char reply[1000];
    EXPECT_GT(process->read(reply, sizeof reply, 20s).value_or(0), 0u) << i;
    // The host shares its input with this process. The next request comes after its next read.
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    std::this_thread::sleep_for(50ms);
  }
  close(ends[1]);
  EXPECT_EQ(process->wait(20s), 0);
  close(ends[0]);
  fs::remove_all(folder);
}

// Cancelling waits until a notification is through. The library may not end the thread that reads
// requests: that ends the host at once, instead of leaving it deaf.
TEST(lifecycle, survives_the_end_of_a_librarys_thread_and_not_that_of_its_own) {
  tested_host host("register cancelled " + stuck_url + "\npost exit-thread");
  EXPECT_NE(host.replies(1), lines{"end"});
  host.send(lock_request);
  EXPECT_EQ(host.process().wait(20s), 128 + SIGABRT);
  EXPECT_EQ(host.report(1).size(), 1U);
}

// A file never hangs up, and nobody reads the output.
TEST(lifecycle, ends_with_a_file_while_its_output_is_stuck) {
  namespace fs = std::filesystem;
  const fs::path folder = make_folder(), host = folder / HOST_NAME;
  fs::copy_file(HOST_PROGRAM, host);
  fs::copy_file(PROBE_LIBRARY, folder / LIBRARY_NAME);
  std::ofstream(folder / "script") << "post threads 1 1000000 " << stuck_url;
  std::ofstream(folder / "input") << lock_request;
  std::string error;
  const auto process = platform::child_process::start(
      "/bin/sh", {"-c", "exec \"$0\" <\"$1\"", host.string(), (folder / "input").string()}, error);
  EXPECT_EQ(process->wait(20s), 0);
  fs::remove_all(folder);
}

TEST(lifecycle, is_neither_held_up_nor_killed_by_half_a_library) {
  namespace fs = std::filesystem;
  const fs::path folder = make_folder(), host = folder / HOST_NAME, library = folder / LIBRARY_NAME;
  fs::copy_file(HOST_PROGRAM, host);
  const auto exit_value = [&host] {
    std::string error;
    const auto process = platform::child_process::start(host.string(), {}, error);
    process->close_input();
    return process->wait(20s);
  };
  EXPECT_EQ(mkfifo(library.c_str(), 0600), 0);
  EXPECT_EQ(exit_value(), 1);
  fs::remove(library);
  fs::copy_file(PROBE_LIBRARY, library);
  EXPECT_EQ(exit_value(), 0);
  for (auto size = fs::file_size(library); size > 0; size /= 2) {
    // What the loader needs may end long before the file does.
    fs::resize_file(library, size);
    EXPECT_LE(exit_value(), 1) << size;
  }
  EXPECT_EQ(exit_value(), 1);
  fs::remove_all(folder);
}

TEST(diagnostics, go_to_no_place_that_others_may_have_made) {
  namespace fs = std::filesystem;
  const auto channel = open_debug_channel();
  const fs::path folder = platform::debug_folder(platform::debug_address());
  write_configuration("[coffer]\ndump=1\n");
  tested_host host;
  for (const auto& [mode, id] : {std::pair(0777, "a"), {0702, "b"}, {0770, "c"}, {0755, "d"}}) {
    fs::permissions(folder, static_cast<fs::perms>(mode));
    host.send(make_frame("{\"id\":\""s + id + "\",\"fragment\":1}") +
              request(R"({"method":"lock-coffer"})"));
    // Once the request has arrived, the lines of the frame before it have been written.
    host.report(static_cast<std::size_t>(*id - 'a') + 1);
  }
  std::string line;
  ASSERT_TRUE(channel->receive(line));
  EXPECT_NE(line.find(R"({"id":"d")"), line.npos) << line;
  EXPECT_EQ(host.finish(), 0);
  write_configuration("");
}

TEST(pointer, is_not_waited_for_when_the_keys_of_the_screen_are_a_pipe) {
  const test_screen screen;
  const auto folder = make_folder();
  EXPECT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  setenv("XAUTHORITY", (folder / "pipe").c_str(), 1);
  tested_host host;
  unsetenv("XAUTHORITY");
  host.send(request(R"({"method":"unlock-coffer"})"));
  // The host asks without a key, which this screen allows.
  const auto in_the_middle = u"msg::CfMsgUnLockDb.1\0\0\0\0\0\0\0\3\0\x280\0\x200\0"s;
  EXPECT_EQ(host.report(1), lines{posted("CfMsgUnLockDb.1", in_the_middle)});
  EXPECT_EQ(host.finish(), 0);
  std::filesystem::remove_all(folder);
}

TEST(setup, serves_all_users_whatever_mask_and_signals_it_was_left_with) {
  namespace fs = std::filesystem;
  const fs::path root = make_folder();
  std::signal(SIGCHLD, SIG_IGN);
  const mode_t mask = umask(077);
  const auto install = [&root](const std::string& host) {
    std::string error;
    const auto setup = platform::child_process::start(
        SETUP_PROGRAM,
        {"install", "--system", "--browser", "vivaldi", "--extension-id", std::string(32, 'a'),
         "--force", "--host", host, "--root", root.string()},
        error);
    return setup == nullptr ? -1 : setup->wait(60s).value_or(-1);
  };
  EXPECT_EQ(install("/opt/caf\xE9/cfhost"), 1) << "no UTF-8";
  EXPECT_FALSE(fs::exists(root / "etc"));
  EXPECT_EQ(install(HOST_PROGRAM), 0);
  umask(mask);
  const fs::path folder = root / "etc/opt/vivaldi/native-messaging-hosts";
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0755));
  fs::remove_all(root);
}
