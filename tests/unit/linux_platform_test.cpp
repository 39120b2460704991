#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/linux/x_conversation.h"
#include "platform/platform.h"
#include "platform/portable/ini.h"
#include "tests/unit/table.h"

namespace {

TEST(Profile, GivesTheFirstValueOfTheKey) {
  const auto value = [](const std::string& text) {
    return std::string(find_ini_value(text, "s", "k").value_or("none"));
  };
  check(value, R"(
    [s]<0A>k=1<0A> => 1 ;; [S]<0D><0A>K = 1 <0D><0A> => 1 ;; <EF><BB><BF>[s]<0A>k=1 => 1
    <20>[ s ] x<0A><09> k<09>=<09>1 2<09> => 1 2 ;; [s]<0A>k="1" => 1 ;; [s]<0A>k='1' => 1
    [s]<0A>k="1' => "1' ;; [s]<0A>k=" => " ;; [s]<0A>;k=0<0A> ; k=0<0A>k=1,2 => 1,2
    [s]<0A>k=1<0A>k=2<0A>[s]<0A>k=3 => 1 ;; [s]<0A>k=a=b => a=b ;; [s]<0A>k= =>
    k=0<0A>[t]<0A>k=0<0A>[s]<0A>kk=0<0A>nonsense<0A>k=1 => 1 ;; => none ;; [s]<0A>k => none
    [t]<0A>k=1 => none ;; [s]<0A>[t]<0A>k=1 => none ;; [ => none)");
}

TEST(Text, HasEachMaximalSubpartReplaced) {
  const auto widened = [](const std::string& text) {
    wide_string wide(text.size(), 0);
    const auto length = static_cast<std::uint32_t>(text.size());
    wide.resize(platform::utf8_to_utf16(text.data(), length, wide.data()));
    return shown(wide);
  };
  check(widened, R"(
    <C0><AF><E0><80><BF><F0><81><82>A => <FFFD><FFFD><FFFD><FFFD><FFFD><FFFD><FFFD><FFFD>A
    <F4><91><92><93><FF>A<80><BF>B => <FFFD><FFFD><FFFD><FFFD><FFFD>A<FFFD><FFFD>B
    <E1><80><E2><F0><91><92><F1><BF>A => <FFFD><FFFD><FFFD><FFFD>A ;; <C3> => <FFFD>
    <E2><82> => <FFFD> ;; <F0><9F><98> => <FFFD> ;; <F5><80> => <FFFD><FFFD> ;; <E2>A => <FFFD>A
    <C1><BF> => <FFFD><FFFD> ;; <ED><A0> => <FFFD><FFFD> ;; <ED><AF>A => <FFFD><FFFD>A)");
}

TEST(Configuration, IsReadFromASmallTextFileAndNothingElse) {
  const std::filesystem::path file = std::filesystem::path(CFHOST_SYSCONFDIR) / "Folder/file.ini";
  const auto configured = [] {
    wide_string out(9, u'#');
    out.resize(platform::config_value({u"Folder", u"file.ini", u"s", u"k"}, out.data(), 9));
    return out;
  };
  std::filesystem::remove_all(file.parent_path());
  EXPECT_EQ(configured(), u"") << "no folder";
  std::filesystem::create_directories(file);
  EXPECT_EQ(configured(), u"") << "a folder in its place";
  std::filesystem::remove(file);
  const auto written = [&](const std::string& text) {
    std::ofstream(file) << text;
    return shown(configured());
  };
  check(written, R"([S]<0A>K= <E2><82><AC> 1 <0A> => <20AC> 1 ;; [s]<0A>k=12345678 => 12345678
    [s]<0A>k=123456789 => 12345678 ;; [s]<0A>k=1<0A><00> =>)");
  EXPECT_EQ(written("[s]\nk=1\n" + std::string(70'000, ';')), "");
}

// A display that the test listens at, as that user.
struct own_display {
  explicit own_display(uid_t user) {
    const std::string name = std::string(1, '\0') + "/tmp/.X11-unix/X" + number;
    sockaddr_un address = {AF_UNIX, {}};
    name.copy(address.sun_path, name.size());
    EXPECT_EQ(seteuid(user), 0);
    EXPECT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address),
                   static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size())),
              0);
    EXPECT_EQ(listen(listener, 5), 0);
    EXPECT_EQ(seteuid(getuid()), 0);
    setenv("DISPLAY", (":" + number).c_str(), 1);
  }
  ~own_display() { close(listener); }

  const std::string number = std::to_string(20'000 + getpid() % 10'000);
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

TEST(Pointer, IsNotAskedOfAServerThatAnotherUserRuns) {
  if (geteuid() != 0) GTEST_SKIP() << "Only root can listen as another user.";
  const own_display display(65534);
  platform::screen_point point;
  EXPECT_FALSE(platform::cursor_position(point));
  char byte = 0;
  EXPECT_EQ(recv(accept(display.listener, nullptr, nullptr), &byte, 1, 0), 0) << "no byte goes out";
}

// An entry of a key file, for a display of any machine.
std::string key_entry(const std::string& number, const std::string& kind, const std::string& key) {
  std::string entry = "\xFF\xFF";
  for (const std::string& text : {std::string(), number, kind, key}) {
    entry += {'\0', static_cast<char>(text.size())};
    entry += text;
  }
  return entry;
}

TEST(Pointer, IsAskedForWithTheKeyOfTheDisplayAndNotWaitedForForEver) {
  const own_display display(geteuid());
  const std::string kind = "MIT-MAGIC-COOKIE-1";
  const auto keys = std::filesystem::temp_directory_path() / ("cfhost-keys-" + display.number);
  std::ofstream(keys) << key_entry("1", kind, "other") << key_entry(display.number, "x", "odd")
                      << key_entry(display.number, kind, "right") << "\1";
  setenv("XAUTHORITY", keys.c_str(), 1);
  char heard[100];
  ssize_t size = 0;
  // Greets, and then sends a byte at a time until nobody listens any more.
  std::thread server([&] {
    const int client = accept(display.listener, nullptr, nullptr);
    size = recv(client, heard, sizeof heard, 0);
    std::string said("\1\0\v\0\0\0\xFF\xFF", 8);
    while (send(client, said.data(), said.size(), MSG_NOSIGNAL) > 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      said = "x";
    }
    close(client);
  });
  platform::screen_point point;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(platform::cursor_position(point));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  server.join();
  EXPECT_EQ(
      std::string(heard, static_cast<std::size_t>(size)),
      std::string("l\0\v\0\0\0\x12\0\5\0\0\0", 12) + kind + std::string("\0\0right\0\0\0", 10));
  std::filesystem::remove(keys);
}

// Numbers of two bytes each, low byte first.
std::string words(std::initializer_list<int> numbers) {
  std::string bytes;
  for (const int n : numbers) bytes += {static_cast<char>(n), static_cast<char>(n >> 8)};
  return bytes;
}

// Where the pointer is after such a talk, as "x,y".
std::string pointer_in(const std::string& talk, int screen) {
  int ends[2] = {};
  EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
  EXPECT_EQ(write(ends[1], talk.data(), talk.size()), std::ssize(talk));
  shutdown(ends[1], SHUT_WR);
  platform::screen_point point;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  const bool told = platform::ask_for_pointer(ends[0], screen, "key", deadline, point);
  char heard[100];
  const ssize_t size = read(ends[1], heard, sizeof heard);
  close(ends[0]);
  close(ends[1]);
  const auto root = static_cast<unsigned char>(size == 36 + 8 ? heard[40] : 0);
  return told ? std::to_string(root) + ':' + std::to_string(point.x) + ',' + std::to_string(point.y)
              : "";
}

TEST(Pointer, IsUnderstoodWhicheverScreenItIsOnAndWhateverElseIsSaid) {
  const std::string screen(36, '\0'), pad(16, '\0');
  // A vendor of 5 bytes, 2 screens and 1 format; the first screen has a depth with 2 visuals.
  std::string setup = pad + words({5, 0, 0x0102, 0, 0, 0, 0, 0}) + std::string(8 + 8, 'v');
  setup +=
      words({7, 0}) + screen.substr(0, 35) + "\1" + words({24, 2, 0, 0}) + std::string(48, 'w');
  setup += words({9, 0}) + screen;
  const std::string head = words({1, 11, 0, static_cast<int>(setup.size() / 4)});
  const std::string event = words({34}) + std::string(30, 'e');
  const std::string reply = words({0x101, 1, 0, 0, 7, 0, 0, 0, 640, -3}) + std::string(12, '\0');
  const std::string talk = head + setup + event + reply;
  EXPECT_EQ(pointer_in(talk, 0), "7:640,-3");
  EXPECT_EQ(pointer_in(talk, 1), "9:640,-3");
  EXPECT_EQ(pointer_in(talk, 2), "");
  EXPECT_EQ(pointer_in(words({0}) + talk.substr(2), 0), "") << "refused";
  EXPECT_EQ(pointer_in(head + setup + words({0}) + reply.substr(2), 0), "") << "an error";
  for (std::size_t size = 0; size < talk.size(); ++size) {
    EXPECT_EQ(pointer_in(talk.substr(0, size), 1), "") << size;
  }
}

}  // namespace
