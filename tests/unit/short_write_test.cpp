// Streams onto a device of the test's own, which not every C library has.
#include "tests/unit/support.h"
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

}  // namespace
