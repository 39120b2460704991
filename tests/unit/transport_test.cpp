#include "tests/unit/support.h"
#include "transport/fragment_store.h"
#include "transport/frame_reader.h"
#include "transport/reply_writer.h"

namespace {

using Transport = quiet_test;
using TransportLog = logged_test;

TEST_F(Transport, DropsMessagesAsAWholeAtItsBounds) {
  EXPECT_TRUE(fragment_store().append("a", std::string(std::size_t{64} * 1024 * 1024, 'Q')));
  fragment_store store({.text = 8, .messages = 3});
  const auto piece = [&store](const std::string& text) {  // id, number or "f", and the piece
    const std::string fragment = text[1] == 'f' ? "\"final\"" : text.substr(1, 1);
    return reassemble_in(store, "{\"id\":\"" + text.substr(0, 1) + "\",\"fragment\":" + fragment +
                                    ",\"msg\":\"" + text.substr(2) + "\"}");
  };
  // What is too large by itself goes up to its end, and what lay untouched longest, up to its own.
  // Of dropped ones as many are remembered as may be kept.
  check_file(piece, TABLES "/bounds.txt");
  EXPECT_EQ(store.text_size(), 0U);
}

// The end-to-end tests have the exact lines for accepted frames.
TEST_F(TransportLog, TellsOfAFrameThatIsNoEnvelopeAndOfTheEnd) {
  const file_pointer input = file_with(frame(std::string("[\0x", 3)));
  std::string message, all;
  EXPECT_EQ(read_message(message, input.get()), read_end);
  for (const std::string& line : fake::system().lines) all += shown(line.substr(17)) + "|";
  EXPECT_EQ(
      all, "actual_read url is 3 buffer:[ buflen=1|json_parse reconstruct: root=" + null_address() +
               " errorPos= errorDesc=Not all objects/arrays have been properly closed"
               "<0D><0A>|Bad fragment received: id:, fragnum:-1, final:false|"
               "actual_read != 4 but instead is 0; bail out [1]|");
}

TEST_F(Transport, CutsAReplySoThatNoEnvelopeExceeds512Bytes) {
  EXPECT_EQ(make_reply_packet("Q", "c=", 0),
            R"({"reply":"success","id":"Q","fragment":0,"data":"c="})");
  std::vector<std::size_t> twelve(10, 506);
  twelve.insert(twelve.end(), {507, 92});
  const std::pair<std::size_t, std::vector<std::size_t>> sizes[] = {
      {0, {88}}, {318, {512}}, {319, {506, 92}}, {636, {506, 512}}, {3499, twelve}};
  for (const auto& [size, envelopes] : sizes) {
    testing::internal::CaptureStdout();
    EXPECT_TRUE(send_reply(std::string(size, 'x')));
    const auto replies = replies_in(testing::internal::GetCapturedStdout());
    ASSERT_EQ(replies.size(), 1U);
    EXPECT_EQ(replies[0].sizes, envelopes);
    EXPECT_EQ(replies[0].text, std::string(size, 'x'));
  }
}

}  // namespace
