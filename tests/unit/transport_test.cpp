#include <map>
#include <thread>

#include "tests/unit/support.h"
#include "transport/fragment_store.h"
#include "transport/frame_reader.h"
#include "transport/reassembly.h"
#include "transport/reply_writer.h"

namespace {

using Transport = quiet_test;
using TransportLog = logged_test;

const std::string whole = R"({"id":"w","fragment":"final","msg":"QQ=="})";  // "A"

// The messages up to the end of the input, the result that ended it, and how far it was read.
std::string read_all(const std::string& bytes) {
  const file_pointer input = file_with(bytes);
  std::string all, message = "untouched";
  std::int32_t result = 0;
  while ((result = read_message(message, input.get())) == 0)
    all += std::exchange(message, "untouched");
  EXPECT_EQ(message, "untouched");
  return all + " " + std::to_string(result) + " " + std::to_string(std::ftell(input.get()));
}

TEST_F(Transport, TakesOrDropsAFrameAndGoesOn) {
  const std::string largest = whole + std::string(8191 - whole.size(), ' ');
  const std::pair<std::string, std::string> inputs[] = {
      {std::string("\x2F\0\0\0", 4) + R"({"id":"k9","fragment":0,"msg":"eyJtZXRob2QiOi"})" +
           std::string("\x3D\0\0\0", 4) +
           R"({"id":"k9","fragment":"final","msg":"JnZXQtc2V0dGluZ3MifQ=="})",
       R"({"method":"get-settings"} 1 116)"},
      {"", " 1 0"},
      {word(5).substr(0, 3), " 1 3"},
      {frame("") + frame("{bad") + frame(whole), "A 1 58"},
      {frame(R"({"id":"e","fragment":"final","msg":"AEE="})") + frame(whole) + frame(whole),
       "AA 1 138"},
      {frame(whole + std::string("\0{rubbish", 9)), "A 1 55"},
      {frame(largest), "A 1 8195"},
      {frame(largest + ' '), " 3 4"},
      {frame(whole) + "\xFF\xFF\xFF\xFF" + whole, "A 3 50"},
      {word(100) + whole, "A 1 46"},
      {word(100) + whole.substr(0, 20), " 1 24"}};
  for (const auto& [bytes, expected] : inputs) EXPECT_EQ(read_all(bytes), expected);
}

TEST_F(Transport, DeliversAMessageOfOneEnvelope) {
  check(reassemble, R"(
    {"msg":"QUJD","fragment":"final","ID":7,"other":{"id":""},"id":"x"} => ABC|0
    {"id":"x","fragment":"final","fragment":3,"msg":"QUJD"} => ABC|0
    {"id":"x","fragment":-1,"fragment":"final","fragment":"x","msg":"QUJD"} => ABC|0
    {"id":"x","id":7,"fragment":"final","fragment":true,"msg":"QUJD","msg":null} => ABC|0
    {"id":"y","id":"x","fragment":"final","msg":"XXXX","msg":"QUJD"} => ABC|0
    [{"id"},"x",{"fragment"},"final",{"msg"},"QUJD"] => ABC|0
    {"id":"x","fragment":"final","msg":"Q\u0055\/\/=\n\u00e9"} => AO<FF>|0
    {"id":"x","fragment":"final","msg":"QQ==QQ=="} => A<04><10>|0
    {"id":"x","fragment":"final","msg":"QUIAQw"} => AB|0
    {"id":"x","fragment":"final"} => |0 ;; {"id":"x","fragment":"final","msg":"AEE"} => |0)");
  EXPECT_EQ(gathered_text(), 0U);
}

TEST_F(Transport, RefusesAnEnvelopeThatLacksSomethingAndKeepsTheStore) {
  check(reassemble, R"({"id":"r","fragment":0,"msg":"QU"} => |0
    => |1 ;; x => |1 ;; { => |1 ;; {} => |1 ;; [] => |1 ;; {"x":1} => |1
    {"id":5,"fragment":0} => |1 ;; {"id":"r","fragment":null} => |1
    {"id":"r","msg":"Q"} => |1 ;; {"fragment":"final","msg":"Q"} => |1
    {"id":"","fragment":"final","msg":"Q"} => |1 ;; {"id":"r","id":"","fragment":0,"msg":"Q"} => |1
    {"id":"r","fragment":-1,"msg":"Q"} => |1 ;; {"id":"r","fragment":4294967295,"msg":"Q"} => |1
    {"id":"r","fragment":5,"fragment":-1,"msg":"Q"} => |1 ;; {"ID":"r","fragment":0,"msg":"Q"} => |1
    {"id":"r","fragment":"Final","msg":"Q"} => |1 ;; {"id":"r","fragment":"final ","msg":"Q"} => |1
    {"id":"r","fragment":"0","msg":"Q"} => |1 ;; {"id":"r","fragment":1.0,"msg":"Q"} => |1
    {"id":"r","fragment":true,"msg":"Q"} => |1 ;; ["id","r","fragment","final","msg","Q"] => |1
    {"id":"r","fragment":"final","msg":"JD"} => ABC|0)");
}

TEST_F(Transport, JoinsPiecesInOrderOfArrivalUnderTheirId) {
  const auto piece = [](const std::string& text) {  // id, number or "f", and what is gathered
    const std::string fragment = text[1] == 'f' ? "\"final\"" : text.substr(1, 2);
    return reassemble("{\"id\":\"" + text.substr(0, 1) + "\",\"fragment\":" + fragment +
                      ",\"msg\":\"" + (text.size() > 3 ? text.substr(3) : "") + "\"}");
  };
  check(piece,
        R"(a 7QU => |0 ;; b 0RE => |0 ;; a 3JD => |0 ;; a 3JD => |0 ;; A-2Qg => |0 ;; b 1 => |0
    af QQ => ABC$4<10>|0 ;; bf VG => DEF|0 ;; Af => B|0 ;; af Qg => B|0 ;; c 0 => |0
    cf => |0 ;; cf QQ== => A|0)");
  EXPECT_EQ(gathered_text(), 0U);
}

TEST_F(Transport, BoundsWhatIsGathered) {
  reassemble(R"({"id":"big","fragment":0,"msg":"QUJD"})");
  EXPECT_EQ(reassemble(R"({"id":"big","fragment":1,"msg":")" +
                       std::string(max_gathered_text - 3, 'Q') + "\"}"),
            "|1");
  EXPECT_EQ(reassemble(R"({"id":"big","fragment":"final","msg":"Qg=="})"), "B|0");
  fragment_store store;
  const std::string quarter(max_gathered_text / 4, 'Q');
  for (const char* id : {"a", "b", "c", "d"}) EXPECT_TRUE(store.append(id, quarter));
  EXPECT_EQ(store.text_size(), max_gathered_text);
  EXPECT_TRUE(store.append("a", "") && store.append("e", "1") && store.append("b", "2"));
  EXPECT_EQ(store.text_size(), 3 * quarter.size() + 2);
  EXPECT_TRUE(store.take("b") == "2") << "what lay untouched longest went first";
  EXPECT_TRUE(store.append("c", std::string(max_gathered_text - quarter.size(), 'Q')));
  EXPECT_EQ(store.text_size(), max_gathered_text);
  EXPECT_FALSE(store.append("c", "Q"));
  EXPECT_EQ(store.text_size(), 0U);
  for (std::size_t i = 0; i < max_unfinished_messages + 100; ++i)
    store.append(std::to_string(i), "Q");
  EXPECT_TRUE(store.append("100", "U"));
  EXPECT_EQ(store.text_size(), max_unfinished_messages + 1);
  EXPECT_EQ(store.take("100"), "QU") << "the oldest one left";
}

TEST_F(TransportLog, TellsOfEachFrameBeforeItIsParsedAndOfEachMember) {
  read_all(frame(R"({"id":"k","fragment":-1,"fragment":"Final","msg":"Q"})") +
           frame(std::string("[\0x", 3)));
  read_all("\xFF\xFF\xFF\xFF");
  std::string all;
  for (const std::string& line : fake::system().lines) {
    const std::size_t root = line.find("root=");
    const bool is_address = root != line.npos && !line.substr(root + 5).starts_with(null_address());
    all += shown(line.substr(17, is_address ? root - 17 : line.npos)) + "|";
  }
  EXPECT_EQ(
      all,
      R"(actual_read url is 53 buffer:{"id":"k","fragment":-1,"fragment":"Final","msg":"Q"} )"
      "buflen=53|json_parse reconstruct: |child->name=id<0D><0A>|id=k<0D><0A>|"
      "child->name=fragment<0D><0A>|fragment=-1<0D><0A>|child->name=fragment<0D><0A>|"
      "fragment=Final<0D><0A>|child->name=msg<0D><0A>|msg=Q<0D><0A>|"
      "Bad fragment received: id:k, fragnum:-1, final:false|"
      "actual_read url is 3 buffer:[ buflen=1|json_parse reconstruct: root=" +
          null_address() +
          " errorPos= errorDesc=Not all objects/arrays have been properly closed<0D><0A>|"
          "Bad fragment received: id:, fragnum:-1, final:false|"
          "actual_read != 4 but instead is 0; bail out [1]|i_len >= 8192 but instead is -1; |");
}

std::vector<received_reply> replies_on(std::FILE* file) {
  std::string bytes(200'000, '\0');
  std::rewind(file);
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
  return replies_in(bytes);
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
    const file_pointer output = file_with("");
    EXPECT_TRUE(send_reply(std::string(size, 'x'), output.get()));
    const std::vector<received_reply> replies = replies_on(output.get());
    ASSERT_TRUE(replies.size() == 1 && replies[0].complete);
    EXPECT_EQ(replies[0].sizes, envelopes);
    EXPECT_EQ(replies[0].text(), std::string(size, 'x'));
  }
}

TEST_F(Transport, KeepsFramesWholeWhenManyThreadsSend) {
  const file_pointer output = file_with("");
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads) {
    thread = std::thread([&output, name = static_cast<char>('a' + (&thread - threads.data()))] {
      for (int i = 0; i < 20; ++i) EXPECT_TRUE(send_reply(std::string(1000, name), output.get()));
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::map<std::string, std::size_t> counts;
  for (const auto& reply : replies_on(output.get())) counts[reply.text()] += reply.complete ? 1 : 0;
  EXPECT_EQ(counts.size(), 4U);
  for (const auto& [text, count] : counts) EXPECT_EQ(count * text.size(), 20'000U);
}

TEST_F(Transport, LeavesWhenNobodyIsLeftToTakeAReply) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  fake::system().abandoned = true;
  EXPECT_EXIT(send_reply("x", stderr), testing::ExitedWithCode(0), "^$");
}

}  // namespace
