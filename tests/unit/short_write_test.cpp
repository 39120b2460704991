// Streams on devices of the test's own, which not every C library supports.
#include "tests/unit/support.h"
#include "transport/frame_reader.h"
#include "transport/reply_writer.h"

namespace {

using ShortWrite = logged_test;

// A device that takes `room` bytes and then fails.
ssize_t write_some(void* room, const char*, std::size_t size) {
  auto& left = *static_cast<std::size_t*>(room);
  if (size > left) return 0;
  left -= size;
  return static_cast<ssize_t>(size);
}

TEST_F(ShortWrite, GivesUpAReplyAtItsFirstShortWriteAndTriesTheNext) {
  const std::string text = "Couldn't send string , abort";
  const std::tuple<int, std::size_t, std::string> failures[] = {
      {_IONBF, 0, "Couldn't send string length(506), abort"},
      {_IONBF, 4, text},
      {_IONBF, 510, "Couldn't send string length(92), abort"},
      {_IOFBF, 0, text},
      {_IOFBF, 510, text}};
  for (auto [buffering, room, line] : failures) {
    const file_pointer output(fopencookie(&room, "w", {nullptr, write_some, nullptr, nullptr}),
                              std::fclose);
    std::setvbuf(output.get(), nullptr, buffering, BUFSIZ);
    fake::reset(true);
    EXPECT_FALSE(send_reply(std::string(319, 'x'), output.get()));
    ASSERT_EQ(fake::system().lines.size(), 3U);
    EXPECT_EQ(fake::system().lines[0].substr(17), "Sending reply to Chrome");
    EXPECT_EQ(fake::system().lines[1].substr(17, 4), "[xxx");
    EXPECT_EQ(fake::system().lines[2].substr(17), line);
    room = 2000;
    EXPECT_TRUE(send_reply("x", output.get()));
  }
}

// A device that fails once, when it holds `room` bytes, and then takes everything.
struct recorder {
  std::size_t room = 0;
  std::string bytes;
};

ssize_t record(void* device, const char* bytes, std::size_t size) {
  auto& r = *static_cast<recorder*>(device);
  const std::size_t taken = std::min(size, r.room);
  r.room = taken < size ? SIZE_MAX : r.room - taken;
  r.bytes.append(bytes, taken);
  return static_cast<ssize_t>(taken);
}

// What was written is whole up to the refused byte, and doesn't hold up what comes later.
TEST_F(ShortWrite, GivesUpAReplyWhicheverByteIsRefused) {
  for (std::size_t room = 0; room < 4 + 506 + 4 + 92; ++room) {
    recorder device{room, {}};
    const file_pointer output(fopencookie(&device, "w", {nullptr, record, nullptr, nullptr}),
                              std::fclose);
    fake::reset(false);
    EXPECT_FALSE(send_reply(std::string(319, 'x'), output.get())) << room;
    EXPECT_EQ(device.bytes.size(), room);
    EXPECT_TRUE(send_reply("later", output.get())) << room;
    const auto later = replies_in(device.bytes.substr(room));
    ASSERT_EQ(later.size(), 1U) << room;
    EXPECT_EQ(later[0].text(), "later");
  }
}

// A device that is interrupted before each byte that it gives.
struct drip {
  std::string bytes;
  std::size_t at = 0;
  bool interrupted = false;
};

ssize_t give_one(void* device, char* out, std::size_t) {
  auto& d = *static_cast<drip*>(device);
  d.interrupted = !d.interrupted;
  if (d.interrupted) return errno = EINTR, -1;
  if (d.at == d.bytes.size()) return 0;
  *out = d.bytes[d.at++];
  return 1;
}

// A device that returns one byte and fails from then on.
ssize_t give_then_fail(void* calls, char* out, std::size_t) {
  if (++*static_cast<int*>(calls) > 1) return errno = EIO, -1;
  return *out = '\x10', 1;
}

TEST_F(ShortWrite, TakesAReadThatFailsForTheEndOfTheInput) {
  int calls = 0;
  const file_pointer stream(fopencookie(&calls, "r", {give_then_fail, nullptr, nullptr, nullptr}),
                            std::fclose);
  std::string message;
  EXPECT_EQ(read_message(message, stream.get()), read_end);
  EXPECT_LE(calls, 3) << "it isn't tried again and again";
  EXPECT_NE(fake::system().lines.back().find("actual_read != 4 but instead is 1;"), message.npos);
}

// The last frame counts as far as it came: without its last byte it isn't JSON.
TEST_F(ShortWrite, ReadsByteByByteThroughSignalsUpToWhereverTheInputEnds) {
  const std::string one = frame(R"({"id":"a","fragment":"final","msg":"QQ=="})");
  const std::string input = one + frame(R"({"id":"b","msg":"Qg"})") + one;
  for (std::size_t size = 0; size <= input.size(); ++size) {
    drip device{input.substr(0, size)};
    const file_pointer stream(fopencookie(&device, "r", {give_one, nullptr, nullptr, nullptr}),
                              std::fclose);
    fake::reset(false);
    std::string message, all;
    while (read_message(message, stream.get()) == read_complete) all += message;
    EXPECT_EQ(all.size(), (size >= one.size() ? 1U : 0U) + (size == input.size() ? 1U : 0U))
        << size;
    EXPECT_EQ(device.at, size);
  }
}

}  // namespace
