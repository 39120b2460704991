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
  // A message that is too large is refused up to its end, and so is the one untouched longest.
  check(piece, R"(a0QUJDQUJD => |0 ;; a1Q => |1 ;; b0QUJD => |0 ;; a2QQ== => |1 ;; afQg== => |1
    afQg== => B|0 ;; c0QUJD => |0 ;; b1 => |0 ;; d0QQ== => |0 ;; bf => ABC|0
    cfQg== => |1 ;; df => A|0 ;; e0 => |0 ;; f0QUJDQUJDQ => |1 ;; ffQg== => |1 ;; ef => |0
    g0 => |0 ;; h0 => |0 ;; i0 => |0 ;; j0 => |0 ;; gfQg== => |1 ;; hfQg== => B|0)");
  // As many dropped messages are remembered as may be kept.
  check(piece, R"(k0 => |0 ;; l0 => |0 ;; m0 => |0 ;; n0 => |0 ;; ifQg== => |1 ;; jfQg== => |1
    o0 => |0 ;; p0 => |0 ;; q0 => |0 ;; kfQg== => B|0 ;; lfQg== => |1)");
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
  EXPECT_EQ(make_reply_packet("", "", -1),
            R"({"reply":"success","id":"","fragment":"final","data":""})");
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
    EXPECT_EQ(replies[0].text(), std::string(size, 'x'));
  }
}

TEST_F(Transport, LeavesWhenNobodyIsLeftToTakeAReply) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  fake::system().abandoned = true;
  EXPECT_EXIT(send_reply("x", stderr), testing::ExitedWithCode(0), "^$");
}

}  // namespace
