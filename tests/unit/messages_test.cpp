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
}

TEST(BagBlock, IsWrittenInKeyOrderOneFieldAtATime) {
  propsW_t bag;
  memory_sink none, some;
  writeBag(none.stream, bag);
  for (const wide_char* key : {u"b", u"a", u""}) bag.set(key, *key == u'a' ? u"1" : u"", true);
  writeBag(some.stream, bag);
  EXPECT_EQ(shown(none.bytes), "<00><00>");
  EXPECT_EQ(shown(some.bytes), "a<00><00><00>1<00><00><00>b<00><00><00><00><00><00><00>");
  EXPECT_EQ(some.calls, 5);
}

TEST(BagBlock, IsLaidOverTheBagAsFarAsItIsWhole) {
  const auto pair = [](wide_view key, wide_view value) {
    return wide_bytes(key) + wide_bytes(value);
  };
  const std::string pairs = pair(u"z", u"1") + pair(u"b", u"2") + pair(u"z", u"3");
  propsW_t bag, many;
  bag.set(u"b", u"0", true);
  odd_stream whole(pairs + wide_bytes(u"")), cut(pairs + wide_bytes(u"b") + "xyz");
  readBag(whole, bag);
  EXPECT_EQ(listed(bag), "b=2 z=3 ");
  readBag(cut, bag);
  EXPECT_EQ(listed(bag), "b= z=3 ");
  EXPECT_TRUE(whole.ok() && !cut.ok());
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
  // The bags, and the words left behind the list; none where it isn't whole.
  const std::tuple<std::string, std::size_t, int> lists[] = {{word(2) + bag + bag + "rest", 2, 1},
                                                             {word(0) + bag, 0, 2},
                                                             {word(0x80000000) + bag, 0, 2},
                                                             {word(0x7FFFFFFF) + bag + bag, 2, 0},
                                                             {"abc", 0, 0},
                                                             {word(2) + bag.substr(0, 3), 0, 0}};
  for (const auto& [payload, bags, words] : lists) {
    std::vector<propsW_t> list(5);
    odd_stream stream(payload);
    readBagList(stream, list);
    EXPECT_EQ(list.size(), bags);
    std::uint32_t next = 0;
    int left = 0;
    while (stream.readU32(next).ok()) ++left;
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
  merged.merge(copy);
  merged.merge(bag);
  copy.assign(bag);
  EXPECT_EQ(listed(copy) + listed(merged), "Key=4 new= other= Key=4 new= old=x other= ");
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

template <class Message>
std::shared_ptr<Message> owned(Message* message, bool referenced = true) {
  if (!referenced) message->addRef();
  return {message, [](Message* m) { m->release(); }};
}

std::vector<std::shared_ptr<iCfMsg>> all_messages() {
  return {owned(make_website()),   owned(make_run_console(1)),     owned(new CfMsgCfDbCmd, false),
          owned(make_unlock_db()), owned(new CfMsgOpenUrl, false), owned(make_get_settings())};
}

TEST(Message, AnswersToItsOwnNameAndThoseOfItsBases) {
  const wide_char* const names[] = {u"msg::CfMsgWebsite",  u"msg::CfMsgRunConsole",
                                    u"msg::CfMsgCfDbCmd",  u"msg::CfMsgUnLockDb.1",
                                    u"msg::CfMsgOpenUrl",  u"msg::CfMsgGetSettings",
                                    u"msg::CfMsgUnLockDb", u"msg::CfMsgWeb"};
  const auto messages = all_messages();
  for (std::size_t m = 0; m < messages.size(); ++m) {
    iCfMsg* const message = messages[m].get();
    EXPECT_TRUE(message->name() == cfName(names[m]));
    for (const wide_char* name : names) {
      EXPECT_EQ(message->query(cfName(name)), name == names[m] ? message : nullptr) << m;
    }
    EXPECT_EQ(message->query(cfName(u"iCfMsg")), message);
    EXPECT_EQ(message->query(cfName(u"msg::CfMsgNpcomm")), m < 4 ? message : nullptr) << m;
    EXPECT_EQ(message->addRef(), 2) << "made with one reference";
    EXPECT_EQ(message->release(), 1);
  }
}

TEST(Message, IsFreedByReleaseAloneWhateverThreadDropsIt) {
  static bool freed = false;
  struct plain_message final : iCfMsg {
    ~plain_message() override { freed = true; }
    std::int32_t release() override { return iCfMsg::release(); }
  };
  auto* const message = new plain_message;
  EXPECT_EQ(message->addRef() + message->decRef() + message->addRef(), 1 + 0 + 1);
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads) {
    thread = std::thread([message] {
      for (int i = 0; i < 1000; ++i) message->addRef();
      for (int i = 0; i < 1000; ++i) message->release();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(freed);
  EXPECT_EQ(message->release(), 0);
  EXPECT_TRUE(freed);
}

TEST(InputStream, ReadsNothingBeyondItsEnd) {
  wide_string text = u"old";
  std::uint32_t value = 0;
  odd_stream stream(wide_bytes(u"ab") + "\x78\x56\x34\x12" + "abc");
  EXPECT_TRUE(stream.readWide() == u"ab" && stream.readU32(value).ok());
  EXPECT_FALSE(stream.readWide(text).ok() || stream.readU32(value).ok() ||
               stream.readU32(value).ok());
  EXPECT_EQ(text, u"");
  EXPECT_EQ(value, 0x12345678U);
  const odd_payload cut(std::string("a\0b\0\0", 5));
  for (const std::ptrdiff_t length : {5, 4, 1, 0, -1, INT32_MIN}) {
    cfIStream odd(cut.memory.get() + 1, length);
    EXPECT_FALSE(static_cast<bool>(odd.readWide()) || odd.readU32(value = 7).ok()) << length;
    EXPECT_EQ(value == 7, length < 4) << "a failed string leaves the position where it was";
  }
}

TEST(OutputStream, CallsItsSinkOnceForAFieldUntilTheFirstFailure) {
  const int fields[] = {12, 5, 8, 8, 3, 0};
  const auto messages = all_messages();
  for (std::size_t m = 0; m < messages.size(); ++m) {
    for (int refused = 0; refused <= fields[m]; ++refused) {
      memory_sink sink;
      sink.refused = refused;
      EXPECT_EQ(messages[m]->write(sink.stream), refused == fields[m] && m != 5) << m;
      EXPECT_EQ(sink.calls, std::min(refused + 1, fields[m])) << m;
    }
    memory_sink sink;
    cfOStream failed{0, &sink, 0, 0}, without_sink{0, nullptr, 0, 1};
    EXPECT_FALSE(messages[m]->write(failed) || messages[m]->write(without_sink) || sink.calls > 0);
  }
}

TEST(Form, IsExactlyAsLaidDown) {
  const auto zeros = [](std::size_t count) { return std::string(count, '\0'); };
  const std::string guard = "\xA5\xA5\xA5\xA5", msg("m\0s\0g\0:\0:\0C\0f\0M\0s\0g\0", 20);
  CfMsgOpenUrl url;
  url.uuid = u"u1";
  url.url = u"x";
  CfMsgUnLockDb unlock;
  unlock.pos = CfWndPos(3, 100, 200);
  EXPECT_EQ(form_of(*all_messages()[0]), msg + std::string("W\0e\0b\0s\0i\0t\0e\0\0\0", 16) +
                                             zeros(8) + guard + zeros(2) + guard + zeros(4) +
                                             guard + zeros(12));
  EXPECT_EQ(form_of(url), msg + std::string("O\0p\0e\0n\0U\0r\0l\0\0\0u\0001\0\0\0x\0\0\0", 26));
  EXPECT_EQ(form_of(*all_messages()[1]),
            msg + std::string("R\0u\0n\0C\0o\0n\0s\0o\0l\0e\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0", 34));
  EXPECT_EQ(form_of(*all_messages()[2]),
            wide_bytes(u"msg::CfMsgCfDbCmd") + zeros(4) + word(5) + zeros(10) + word(~0U));
  EXPECT_EQ(form_of(unlock),
            wide_bytes(u"msg::CfMsgUnLockDb.1") + zeros(12) + word(3) + word(100) + word(200));
}

void fill(CfMsgWebsite& site) {
  site.sender = u"tab-12";
  site.auxText = u"\U0001F600";
  site.props.set(u"title", u"Sign in", true);
  site.props.set(u"empty", u"", true);
  site.inputs.resize(2);
  site.inputs[1].set(u"name", u"pass", true);
  site.pos = CfWndPos(3, -1, INT32_MIN);
}

TEST(Form, IsReadWholeOrNotAtAll) {
  const auto messages = all_messages(), copies = all_messages();
  fill(static_cast<CfMsgWebsite&>(*messages[0]));
  static_cast<CfMsgRunConsole&>(*messages[1]).consoleText2 = u"2";
  static_cast<CfMsgCfDbCmd&>(*messages[2]).dbArg2 = 99;
  static_cast<CfMsgUnLockDb&>(*messages[3]).pos.y = -5;
  static_cast<CfMsgOpenUrl&>(*messages[4]).uuid = u"a1b2";
  for (std::size_t m = 0; m < 5; ++m) {
    const std::string form = form_of(*messages[m]);
    odd_stream whole(form + "behind"), other("X" + form.substr(1));
    EXPECT_TRUE(copies[m]->read(whole) && form_of(*copies[m]) == form) << m;
    EXPECT_FALSE(copies[m]->read(other)) << m;
    for (std::size_t size = 0; size < form.size(); ++size) {
      odd_stream cut(form.substr(0, size));
      EXPECT_FALSE(copies[m]->read(cut)) << m << ", " << size;
    }
  }
}

TEST(Form, OfAWebsiteIsGoneThroughWhateverFails) {
  CfMsgWebsite site, read;
  fill(site);
  const std::string form = form_of(site), text = "tab-12|2 title=Sign in|0|1 name=pass|";
  const std::pair<std::string, std::string> payloads[] = {
      {wide_bytes(u"msg::CfMsgWebsiteRsp") + form.substr(36), text + "3,-1,-2147483648"},
      {form.substr(0, form.size() - 12), text + "0,0,0"},
      {form.substr(0, form.size() - 4), text + "3,-1,0"}};
  for (const auto& [payload, expected] : payloads) {
    odd_stream stream(payload);
    EXPECT_FALSE(read.read(stream));
    EXPECT_EQ(picture(read), expected);
  }
  odd_stream other_guards(std::string(form).replace(form.size() - 16, 4, word(7)));
  EXPECT_TRUE(read.read(other_guards) && read.guard == 7);
}

}  // namespace
