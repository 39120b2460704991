#include <chrono>
#include <thread>

#include "messages/commands.h"
#include "tests/unit/support.h"

namespace {

// "key=value " for each pair.
template <class Bag>
std::string listed(const Bag& bag) {
  std::string text;
  typename Bag::const_iterator at(bag.map());
  for (; !at.atEnd(); at.toNext()) text += shown(at.key()) + "=" + shown(at.value()) + " ";
  EXPECT_EQ(at.toNext(), bag.map().end());
  return text;
}

TEST(TextMap, OrdersKeysByCodeUnitAndMovesNoText) {
  text_map map;
  for (const wide_view key : {u"a", u"\uE000", u"", u"Ba", u"\U0001F600", u"Z", u"B"}) {
    map.set(key, u"value");
  }
  std::string keys;
  for (const text_map::pair& p : map) keys += shown(p.key) + " ";
  EXPECT_EQ(keys, " B Ba Z a <D83D><DE00> <E000> ");
  const wide_char* const value = map.find(u"B")->value;
  for (std::size_t i = 0; i < 1000; ++i) {
    map.set(wide_string{static_cast<wide_char>(i * 7919), u'k'}, wide_string(50, u'v'));
    map.set(u"n", wide_string(i * 7 % 1000, u'n'));
    ASSERT_EQ(map.find(u"n")->value_text(), wide_string(i * 7 % 1000, u'n'));
  }
  map.set(u"B", map.find(u"B")->value_text().substr(1));
  EXPECT_EQ(map.find(u"B")->value, value);
  EXPECT_EQ(wide_view(value), u"alue");
  text_map copy(map), moved(std::move(map));
  EXPECT_EQ(moved.find(u"B")->value, value);
  copy.set(u"B", u"");
  moved = copy;
  copy = text_map();
  EXPECT_EQ(moved.find(u"B")->value_text(), u"");
  EXPECT_EQ(moved.size(), 1008U);
}

TEST(PropertyBag, SetsAndGets) {
  propsW_t bag, other;
  const wide_char fallback[] = u"fallback";
  EXPECT_TRUE(bag.set(u"Name", u"1", false) && bag.add(u"name", u"2") && bag.set(u"", u"3", true));
  EXPECT_FALSE(bag.set(u"Name", u"4", false) || bag.add(u"Name", u"4") ||
               bag.set(nullptr, u"", true));
  EXPECT_TRUE(bag.set(u"name", u"5", true) && bag.set(u"null", nullptr, true));
  EXPECT_EQ(listed(bag), "=3 Name=1 name=5 null= ");
  EXPECT_EQ(wide_view(bag.get(u"null", fallback)), u"");
  EXPECT_TRUE(bag.get(u"NAME", fallback) == fallback && bag.get(nullptr, nullptr) == nullptr);
  EXPECT_TRUE(bag.has(u"") && !bag.has(u"nam") && !bag.has(nullptr));
  EXPECT_TRUE(bag.erase(u"") && !bag.erase(u"") && !bag.erase(nullptr));
  EXPECT_TRUE(other.add(u"null", u"6") && other.add(u"x", u"7"));
  bag.merge(other);
  EXPECT_EQ(listed(bag), "Name=1 name=5 null=6 x=7 ");
  bag.assign(other);
  other.clear();
  EXPECT_EQ(listed(bag) + listed(other), "null=6 x=7 ");
  bag.assign(bag);
  EXPECT_TRUE(bag.empty());
}

TEST(BagBlock, IsLaidOverTheBagAsFarAsItIsWhole) {
  const auto pair = [](wide_view key, wide_view value) {
    return wide_bytes(key) + wide_bytes(value);
  };
  const std::string pairs = pair(u"z", u"1") + pair(u"b", u"2") + pair(u"z", u"3");
  propsW_t bag, many;
  bag.set(u"a", u"old", true);
  bag.set(u"b", u"old", true);
  odd_stream whole(pairs + wide_bytes(u"")), cut(pairs + wide_bytes(u"b") + "xyz");
  readBag(whole, bag);
  EXPECT_EQ(listed(bag), "a=old b=2 z=3 ");
  readBag(cut, bag);
  EXPECT_EQ(listed(bag), "a=old b= z=3 ");
  EXPECT_TRUE(whole.ok && !cut.ok);
  std::string block;
  for (char16_t i = 60'000; i > 0; --i) {
    block += pair(wide_string{static_cast<char16_t>(i % 20'000 + 1), u'k'}, wide_string{i});
  }
  odd_stream descending(block + wide_bytes(u""));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(readBag(descending, many) && many.size() == 20'000);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  for (const text_map::pair& p : many.map()) {
    ASSERT_EQ(*p.value, *p.key == 1 ? 20'000 : *p.key - 1) << "the last of equal keys wins";
  }
}

TEST(BagList, IsReadAsFarAsItsBagsGo) {
  const std::string bag = wide_bytes(u"a") + wide_bytes(u"1") + wide_bytes(u"");
  // The bags, and the number of words left after the list; none if the list isn't whole.
  const std::tuple<std::string, std::size_t, int> lists[] = {
      {word(2) + bag + bag + "rest", 2, 1},
      {word(0x80000000) + bag, 0, 2},
      {word(0x7FFFFFFF) + bag + bag, 2, 0},
      {word(65'537) + std::string(131'074, 0), 65'536, 0}};
  for (const auto& [payload, bags, words] : lists) {
    std::vector<propsW_t> list(5);
    odd_stream stream(payload);
    readBagList(stream, list);
    EXPECT_EQ(list.size(), bags);
    std::uint32_t next = 0;
    int left = 0;
    while (stream.readU32(next).ok) ++left;
    EXPECT_EQ(left, words);
  }
}

TEST(Settings, SetAndGet) {
  CfSettings bag, copy, merged;
  for (const wide_char* key : {static_cast<const wide_char*>(nullptr), u""}) {
    EXPECT_FALSE(bag.set(key, u"x") || bag.set(key, nullptr) || bag.setEmpty(key) || bag.get(key));
  }
  EXPECT_TRUE(bag.set(u"Key", u"1") && bag.set(u"key", u"2") && bag.set(u"other", u"3"));
  EXPECT_TRUE(bag.set(u"Key", u"4") && bag.set(u"missing", nullptr) && bag.setEmpty(u"other"));
  EXPECT_EQ(bag.get(u"KEY"), nullptr);
  EXPECT_EQ(wide_view(bag.get(u"other")), u"");
  EXPECT_TRUE(bag.set(u"key", nullptr) && bag.setEmpty(u"new") && copy.set(u"old", u"x"));
  EXPECT_TRUE(copy.set(u"Key", u"replaced"));
  merged.merge(copy);
  merged.merge(bag);
  copy.assign(bag);
  EXPECT_EQ(listed(copy) + listed(merged), "Key=4 new= other= Key=4 new= old=x other= ");
  merged.merge(merged);
  copy.assign(copy);
  EXPECT_TRUE(merged.size() == 4 && copy.size() == 0);
}

TEST(DummySettings, AreBornWithSixteenDefaultsAndRefuseToSet) {
  CfDummySettings bag;
  EXPECT_FALSE(bag.set(u"pwdman.enabled", u"true") || bag.set(u"pwdman.enabled", nullptr));
  EXPECT_EQ(listed(bag),
            "pwdman.Chrome.enabled=true pwdman.Firefox.enabled=true pwdman.IE.enabled=true "
            "pwdman.OBk.enabled=true pwdman.Skype.enabled=true pwdman.Yahoo.enabled=true "
            "pwdman.askMasterPasswordAtLogin=0 pwdman.autoSignIn=false "
            "pwdman.autofillEnabled=false pwdman.autofillMode=0 pwdman.enabled=false "
            "pwdman.lockCofferOnIdle=false pwdman.masterPasswordEnabled=false pwdman.saveMode=0 "
            "pwdman.showFillFormsWnd=true pwdman.showMultilogsDlg=true ");
  EXPECT_TRUE(bag.setEmpty(u"pwdman.enabled") && *bag.get(u"pwdman.enabled") == 0);
  EXPECT_EQ(shown(CfSettings().name().text()) + shown(bag.name().text()),
            "CfSettings__dumySettings");
}

struct counted_message final : message_of<counted_message, iCfMsg> {
  static constexpr cfName type_name{u"counted"};
  explicit counted_message(int& f) : freed(f) {}
  ~counted_message() { ++freed; }
  int& freed;
};

TEST(Message, IsFreedByReleaseAloneWhateverThreadDropsIt) {
  int freed = 0;
  auto* const message = new counted_message(freed);
  EXPECT_EQ(message->addRef() + message->decRef() + message->addRef(), 1 + 0 + 1);
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads) {
    thread = std::thread([message] {
      for (int i = 0; i < 1000; ++i) message->addRef();
      for (int i = 0; i < 1000; ++i) message->release();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(freed, 0);
  EXPECT_EQ(message->release(), 0);
  EXPECT_EQ(freed, 1);
  EXPECT_EQ((new counted_message(freed))->release(), -1) << "one that never had a reference";
  EXPECT_EQ(freed, 2);
  alignas(counted_message) unsigned char room[sizeof(counted_message)];
  auto* const placed = new (room) counted_message(freed);
  EXPECT_EQ(placed->deletingDestructor(2), room) << "destroyed, and its memory left alone";
  EXPECT_EQ(freed, 3);
}

TEST(InputStream, ReadsNothingBeyondItsEnd) {
  wide_string text = u"old";
  std::uint32_t value = 0;
  odd_stream stream(wide_bytes(u"ab") + "\x78\x56\x34\x12" + "abc");
  EXPECT_TRUE(stream.readWide() == u"ab" && stream.readU32(value).ok);
  EXPECT_FALSE(stream.readWide(text).ok || stream.readU32(value).ok || stream.readU32(value).ok);
  EXPECT_EQ(text, u"");
  EXPECT_EQ(value, 0x12345678U);
  EXPECT_EQ(stream.cursor - stream.begin, 6U + 4 + 4 + 4) << "a failed word is stepped over";
  const odd_payload cut(std::string("a\0b\0\0", 5));
  for (const std::ptrdiff_t length : {5, 4, 1, 0, -1, INT32_MIN}) {
    cfIStream odd(cut.memory.get() + 1, length);
    EXPECT_FALSE(static_cast<bool>(odd.readWide()) || odd.readU32(value = 7).ok) << length;
    EXPECT_EQ(value == 7, length < 4) << "a failed string leaves the position where it was";
  }
  // Units that a search for zeros might mistake for one.
  for (const wide_char unit : {u'\u0001', u'\u0100', u'\u8000', u'\u8001', u'\uFF00', u'\uFFFF'}) {
    for (std::size_t length = 0; length < 20; ++length) {
      const wide_string units(length, unit);
      odd_stream repeated(wide_bytes(units) + wide_bytes(u"") + "behind");
      EXPECT_TRUE(repeated.readWide() == units) << shown(units) << ", " << length;
    }
  }
}

}  // namespace
