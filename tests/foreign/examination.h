// What a foreign library does with the host, and what it must find. Each library includes this
// once, in C or in C++, after its own declarations of the interface; nothing in it comes from the
// project's headers. The calls below go through small functions that each library defines.
//
// The first request makes the library deliver all notifications, the last one the verdict.
#include <stddef.h>
#include <stdint.h>

static struct {
  uint32_t checks, failed;
  const char16_t* first;
} verdict = {0, 0, u"none"};

static void check(int holds, const char16_t* what) {
  ++verdict.checks;
  if (holds) return;
  if (verdict.failed++ == 0) verdict.first = what;
}
#define CHECK(condition) check((condition) ? 1 : 0, u"" #condition)

static int same_text(const char16_t* a, const char16_t* b) {
  if (a == 0 || b == 0) return 0;
  while (*a != 0 && *a == *b) ++a, ++b;
  return *a == *b;
}

static int same_bytes(const void* a, const void* b, size_t size) {
  const unsigned char* x = (const unsigned char*)a;
  const unsigned char* y = (const unsigned char*)b;
  while (size > 0 && *x == *y) --size, ++x, ++y;
  return size == 0;
}

// What a bag's `map` returns, as far as a reader needs it.
typedef struct map_pair {
  const char16_t* key;
  const char16_t* value;
  uint32_t key_length, value_length;
  uint64_t unused;
} map_pair;
typedef struct bag_map {
  const map_pair* pairs;
  uint32_t size;
  uint32_t unused[5];
} bag_map;

// The bytes given to a sink, which refuses the piece with the number `refused`, from 0.
static unsigned char collected[8192];
static size_t collected_size;
static int collected_pieces, refused;

static int collect(const void* bytes, uint64_t size) {
  if (collected_pieces++ >= refused || size > sizeof collected - collected_size) return 0;
  for (uint64_t i = 0; i < size; ++i) {
    collected[collected_size++] = ((const unsigned char*)bytes)[i];
  }
  return 1;
}

// The posted messages in order: a word is two units, the low one first.
#define GUARD u"\xA5A5\xA5A5"
#define TYPE u"msg::CfMsgWebsite\0"
#define PAGE \
  TYPE u"\0\0tab-12\0\0" GUARD                                                                  \
  u"after-url\0\0before-url\0\0click-source\0\0context\0\0document-state\0\0source\0page-url\0" \
  u"source-context\0\0source-event\0\0submit-source\0\0title\0Sign in\0user-state\0\0\0" GUARD  \
  u"\1\0cf-schema\0\0cf-value\0\0context\0\0form-context\0\0id\0e1\0name\0email\0"              \
  u"readonly\0\0type\0text\0value\0\0\0" GUARD u"\0\0\0\0\0\0"
#define DROP_DOWN \
  TYPE u"\0\0\0\0" GUARD u"user-state\0drop-down\0\0" GUARD u"\0\0" GUARD u"\0\0\0\0\0\0"
#define CONSOLE(code) u"msg::CfMsgRunConsole\0\0\0" code u"\0\0\0"
#define UNLOCK u"msg::CfMsgUnLockDb.1\0\0\0\0\0\0\0\3\0\0\0\0\0"
#define LOCK u"msg::CfMsgCfDbCmd\0\0\0\5\0\0\0\0\0\0\xFFFF\xFFFF"
#define OPEN_URL u"msg::CfMsgOpenUrl\0a1b2\0pages/sign-in\0"
// The literal's own terminator isn't part of a form.
#define FORM(text) text, sizeof(text) - 2

static const struct {
  const char16_t* name;
  int is_npcomm, pieces;
  const char16_t* form;
  size_t size;
  size_t varying;  // bytes at the end that tell where the pointer is
} expected[] = {
    {u"msg::CfMsgWebsite", 1, 53, FORM(PAGE), 0},
    {u"msg::CfMsgWebsite", 1, 53, FORM(PAGE), 0},
    {u"msg::CfMsgWebsite", 1, 14, FORM(DROP_DOWN), 12},
    {u"msg::CfMsgRunConsole", 1, 5, FORM(CONSOLE(u"\1")), 0},
    {u"msg::CfMsgRunConsole", 1, 5, FORM(CONSOLE(u"\5")), 0},
    {u"msg::CfMsgRunConsole", 1, 5, FORM(CONSOLE(u"\3")), 0},
    {u"msg::CfMsgGetSettings", 0, 0, u"", 0, 0},
    {u"msg::CfMsgUnLockDb.1", 1, 8, FORM(UNLOCK), 8},
    {u"msg::CfMsgCfDbCmd", 1, 8, FORM(LOCK), 0},
};
enum { first_page, second_page, drop_down, settings_request = 6, unlock, last_request };

static int write_to_sink(struct iCfMsg* message, int refused_piece) {
  collected_size = 0;
  collected_pieces = 0;
  refused = refused_piece;
  return message_write(message);
}

static void examine_form(struct iCfMsg* message, int index) {
  const int pieces = expected[index].pieces;
  for (int i = 0; i < pieces; ++i) {
    CHECK(!write_to_sink(message, i));
    CHECK(collected_pieces == i + 1);
  }
  CHECK(write_to_sink(message, pieces) == (pieces > 0));
  CHECK(collected_pieces == pieces && collected_size == expected[index].size);
  CHECK(
      same_bytes(collected, expected[index].form, expected[index].size - expected[index].varying));
}

static void examine_names(struct iCfMsg* message, int index) {
  CHECK(same_text(message_name(message), expected[index].name));
  CHECK(message_query(message, expected[index].name) == message);
  CHECK(message_query(message, u"iCfMsg") == message);
  CHECK((message_query(message, u"msg::CfMsgNpcomm") == message) == expected[index].is_npcomm);
  CHECK(message_query(message, u"msg::CfMsg") == 0);
  if (!expected[index].is_npcomm) return;
  const uint32_t* const fields = (const uint32_t*)((const char*)message + 16);
  CHECK(fields[0] == 0 && fields[1] == (index == last_request ? 30000u : 0u));
  CHECK(fields[2] == ~0u && fields[3] == ~0u);
}

// Calls `read` of the host's message with a stream of the library's.
static void examine_reading(struct iCfMsg* message) {
  static unsigned char form[sizeof collected];
  const size_t size = collected_size;
  for (size_t i = 0; i < size; ++i) form[i] = collected[i];
  form[size - 12] = 7;
  CHECK(message_read(message, form, size));
  CHECK(write_to_sink(message, 100) && same_bytes(form, collected, size));
  CHECK(!message_read(message, form, size - 1));
  CHECK(position_pieces((char*)message + 104) == 3);
}

static void examine_map(const bag_map* map, uint32_t size, const char16_t* last_key) {
  CHECK(map->size == size);
  for (uint32_t i = 0; i < map->size; ++i) {
    const map_pair* p = &map->pairs[i];
    CHECK(p->key[p->key_length] == 0 && p->value[p->value_length] == 0);
  }
  CHECK(same_text(map->pairs[size - 1].key, last_key));
}

static void examine_bag(struct propsW_t* bag) {
  CHECK(!bag_empty(bag) && bag_size(bag) == 11 && bag_has(bag, u"title") &&
        !bag_has(bag, u"Title"));
  CHECK(same_text(bag_get(bag, u"title", 0), u"Sign in") && bag_get(bag, u"zz", 0) == 0);
  CHECK(bag_add(bag, u"zz", u"1") && !bag_add(bag, u"zz", u"2") && !bag_set(bag, u"zz", u"3", 0));
  CHECK(bag_set(bag, u"zz", u"4", 1) && same_text(bag_get(bag, u"zz", 0), u"4"));
  CHECK(bag_map_of(bag, 0) == bag_map_of(bag, 1));
  examine_map(bag_map_of(bag, 0), 12, u"zz");
  CHECK(walk_bag(bag_map_of(bag, 0)) == 12);
  CHECK(bag_erase(bag, u"zz") && !bag_erase(bag, u"zz"));
  bag_merge(bag, bag);
  CHECK(bag_size(bag) == 11);
  bag_assign(bag, bag);
  CHECK(bag_empty(bag));
  bag_clear(bag);
}

static void examine_settings(struct CfSettings* bag, struct CfSettings* defaults) {
  CHECK(same_text(settings_name(bag), u"CfSettings"));
  CHECK(same_text(settings_name(defaults), u"__dumySettings"));
  CHECK(settings_size(defaults) == 16 && !settings_set(defaults, u"x", u"y"));
  CHECK(same_text(settings_get(defaults, u"pwdman.saveMode"), u"0"));
  CHECK(settings_map_of(defaults, 0) == settings_map_of(defaults, 1));
  examine_map(settings_map_of(defaults, 0), 16, u"pwdman.showMultilogsDlg");
  CHECK(walk_settings(settings_map_of(defaults, 0)) == 16);
  CHECK(settings_size(bag) == 0 && settings_set(bag, u"a", u"1") && settings_set_empty(bag, u"b"));
  CHECK(!settings_set(bag, u"", u"1") && !settings_set_empty(bag, u""));
  settings_merge(bag, defaults);
  CHECK(settings_size(bag) == 18 && same_text(settings_get(bag, u"b"), u""));
  settings_dump(bag, 0);
  settings_assign(bag, defaults);
  CHECK(settings_size(bag) == 16 && settings_get(bag, u"a") == 0);
  settings_clear(bag);
  CHECK(settings_size(bag) == 0);
}

// A packet with a payload at an odd address.
static const unsigned char* packet_of(const char16_t* form, size_t size) {
  static unsigned char memory[1 + 88 + 4096];
  unsigned char* const packet = memory + 1;
  for (int i = 0; i < 4; ++i) packet[84 + i] = (unsigned char)(size >> 8 * i);
  for (size_t i = 0; i < size; ++i) packet[88 + i] = ((const unsigned char*)form)[i];
  return packet;
}

static void deliver_all(void) {
  deliver_packet(packet_of(FORM(PAGE)));
  deliver_packet(packet_of(FORM(u"msg::CfMsgWebsiteRsp\0" PAGE)));
  deliver_packet(packet_of(FORM(u"msg::CfMsgWebsiteNavigate\0" PAGE)));
  deliver_packet(packet_of(FORM(OPEN_URL)));
  static const map_pair pair = {u"pwdman.enabled", u"true", 14, 4, 0};
  const bag_map settings = {&pair, 1, {0}}, none = {0, 0, {0}};
  deliver_coffer_data(&settings, &none);
  deliver_settings(&settings);
}

static void deliver_verdict(void) {
  static char16_t digits[8];
  uint32_t failed = verdict.failed, length = 0;
  for (uint32_t power = 100000; power > 0; power /= 10) {
    if (failed >= power || length > 0 || power == 1) {
      digits[length++] = (char16_t)(u'0' + failed / power % 10);
    }
  }
  uint32_t first = 0;
  while (verdict.first[first] != 0) ++first;
  const map_pair pairs[] = {{u"failed", digits, 6, length, 0},
                            {u"first", verdict.first, 5, first, 0}};
  const bag_map map = {pairs, 2, {0}};
  deliver_settings(&map);
}

static void examine_posted(struct iCfMsg* message) {
  static int index = 0;
  examine_names(message, index);
  examine_form(message, index);
  if (index == first_page) examine_bag((struct propsW_t*)((char*)message + 104));
  if (index == unlock) examine_reading(message);
  if (index == settings_request) {
    examine_settings((struct CfSettings*)((char*)message + 16),
                     (struct CfSettings*)((char*)message + 96));
  }
  CHECK(message_spare(message) == 0);
  CHECK(message_add_reference(message) == 2 && message_drop_reference(message) == 1);
  CHECK(message_release(message) == 0);
  if (index == first_page) deliver_all();
  if (index == last_request) deliver_verdict();
  ++index;
}
