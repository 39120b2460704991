// A library in C++ that declares the interface by itself. Each compiler has its own rules.h.
#include <stddef.h>
#include <stdint.h>

struct cfName {
  const char16_t* text;
};

#include "rules.h"

struct cfOStream;
struct cfIStream;

struct iCfMsg {
  SLOT_0(iCfMsg)
  virtual int32_t release() { return --references; }
  virtual void* query(const cfName&) { return nullptr; }
  NAME_SLOT
  virtual bool write(cfOStream&) { return false; }
  virtual bool read(cfIStream&) { return false; }
  virtual int32_t spare() { return 0; }
  virtual int32_t addRef() { return ++references; }
  virtual int32_t decRef() { return --references; }

  int32_t references = 1;
  uint32_t reserved = 0;
};

struct propsW_t {
  SLOT_0(propsW_t)
  virtual void destroy() = 0;
  virtual bool empty() const = 0;
  virtual uint64_t size() const = 0;
  virtual bool add(const char16_t* key, const char16_t* value) = 0;
  virtual void merge(const propsW_t& other) = 0;
  virtual void assign(const propsW_t& other) = 0;
  virtual void clear() = 0;
  virtual bool erase(const char16_t* key) = 0;
  virtual bool has(const char16_t* key) const = 0;
  virtual bool set(const char16_t* key, const char16_t* value, bool overwrite) = 0;
  virtual const char16_t* get(const char16_t* key, const char16_t* fallback) const = 0;
  virtual const void* map() = 0;
  virtual const void* map_again() const = 0;
};

// The host uses only two operations of a library's own settings.
struct CfSettings {
  SLOT_0(CfSettings)
  virtual void assign(const CfSettings&) {}
  virtual void merge(const CfSettings&) {}
  virtual void destroy() {}
  NAME_SLOT
  virtual void clear() {}
  virtual bool set(const char16_t*, const char16_t*) { return false; }
  virtual bool setEmpty(const char16_t*) { return false; }
  virtual const char16_t* get(const char16_t*) const { return nullptr; }
  virtual uint64_t size() const { return 0; }
  virtual const void* map() { return storage; }
  virtual const void* map_again() const { return storage; }
  virtual void dump(const char16_t*) const {}

  uint64_t storage[4] = {};
};
static_assert(sizeof(CfSettings) == 40, "");

struct CfWndPos {
  virtual bool write(cfOStream&) const = 0;
  virtual bool read(cfIStream&) = 0;
};

struct cfSink {
  SLOT_0(cfSink)
  virtual bool write_bytes(const void* bytes, uint64_t size) = 0;
};

struct cfOStream {
  uint64_t own;
  cfSink* sink;
  unsigned char own_too, ok;
};

struct cfIStream {
  SLOT_0(cfIStream)
  const unsigned char *begin, *end, *cursor;
  bool ok;
};

struct iCfClientObs {
  SLOT_0(iCfClientObs)
  virtual int32_t notify(iCfMsg* object) = 0;
};

static int message_write(iCfMsg* message);
static const char16_t* message_name(iCfMsg* m) { return name_of(*m).text; }
static void* message_query(iCfMsg* m, const char16_t* name) { return m->query(cfName{name}); }
static int message_read(iCfMsg* message, const unsigned char* form, size_t size);
static int position_pieces(void* position);
static int message_spare(iCfMsg* m) { return m->spare(); }
static int message_add_reference(iCfMsg* m) { return m->addRef(); }
static int message_drop_reference(iCfMsg* m) { return m->decRef(); }
static int message_release(iCfMsg* m) { return m->release(); }

static int bag_empty(propsW_t* b) { return b->empty(); }
static uint64_t bag_size(propsW_t* b) { return b->size(); }
static int bag_has(propsW_t* b, const char16_t* key) { return b->has(key); }
static int bag_add(propsW_t* b, const char16_t* k, const char16_t* v) { return b->add(k, v); }
static int bag_set(propsW_t* b, const char16_t* k, const char16_t* v, int overwrite) {
  return b->set(k, v, overwrite != 0);
}
static const char16_t* bag_get(propsW_t* b, const char16_t* k, const char16_t* fallback) {
  return b->get(k, fallback);
}
static int bag_erase(propsW_t* b, const char16_t* key) { return b->erase(key); }
static void bag_merge(propsW_t* b, propsW_t* other) { b->merge(*other); }
static void bag_assign(propsW_t* b, propsW_t* other) { b->assign(*other); }
static void bag_clear(propsW_t* b) { b->clear(); }

static const char16_t* settings_name(CfSettings* s) { return name_of(*s).text; }
static uint64_t settings_size(CfSettings* s) { return s->size(); }
static int settings_set(CfSettings* s, const char16_t* k, const char16_t* v) {
  return s->set(k, v);
}
static int settings_set_empty(CfSettings* s, const char16_t* key) { return s->setEmpty(key); }
static const char16_t* settings_get(CfSettings* s, const char16_t* key) { return s->get(key); }
static void settings_merge(CfSettings* s, CfSettings* other) { s->merge(*other); }
static void settings_assign(CfSettings* s, CfSettings* other) { s->assign(*other); }
static void settings_clear(CfSettings* s) { s->clear(); }
static void settings_dump(CfSettings* s, const char16_t* prefix) { s->dump(prefix); }

static const struct bag_map* bag_map_of(propsW_t* b, int again) {
  return static_cast<const bag_map*>(again ? b->map_again() : b->map());
}
static const struct bag_map* settings_map_of(CfSettings* s, int again) {
  return static_cast<const bag_map*>(again ? s->map_again() : s->map());
}
static uint32_t walk_bag(const struct bag_map* map);
static uint32_t walk_settings(const struct bag_map* map);
static void deliver_packet(const unsigned char* packet);
static void deliver_coffer_data(const struct bag_map* settings, const struct bag_map* defaults);
static void deliver_settings(const struct bag_map* settings);

#include "examination.h"

struct collecting_sink final : cfSink {
  bool write_bytes(const void* bytes, uint64_t size) override { return collect(bytes, size) != 0; }
};

static int message_write(iCfMsg* message) {
  collecting_sink sink;
  cfOStream stream = {~uint64_t{0}, &sink, 0xEE, 1};
  const bool written = message->write(stream);
  CHECK(stream.own == ~uint64_t{0} && stream.own_too == 0xEE);
  return written;
}

static int message_read(iCfMsg* message, const unsigned char* form, size_t size) {
  cfIStream stream;
  stream.begin = stream.cursor = form;
  stream.end = form + size;
  stream.ok = true;
  const bool whole = message->read(stream);
  CHECK(whole == stream.ok && (!whole || stream.cursor == stream.end));
  return whole;
}

static int position_pieces(void* position) {
  collecting_sink sink;
  cfOStream stream = {0, &sink, 0, 1};
  collected_size = 0, collected_pieces = 0, refused = 100;
  CHECK(static_cast<CfWndPos*>(position)->write(stream));
  return collected_pieces;
}

// A cursor over the map of a bag, with the same operations as the host's own cursors.
struct bag_cursor {
  SLOT_0(bag_cursor)
  virtual const char16_t* key() const { return position->key; }
  virtual const char16_t* value() const { return position->value; }
  virtual const map_pair* toFirst() { return position = map.pairs; }
  virtual bool atEnd() const { return position == map.pairs + map.size; }
  virtual const map_pair* toNext() { return atEnd() ? position : ++position; }
  const bag_map& map;
  const map_pair* position;
  explicit bag_cursor(const bag_map& m) : map(m), position(m.pairs) {}
};
static_assert(sizeof(bag_cursor) == 24, "");

static uint32_t walk_bag(const bag_map* map) {
  bag_cursor cursor(*map);
  uint32_t pairs = 0;
  for (cursor.toFirst(); !cursor.atEnd(); cursor.toNext()) pairs += cursor.key() && cursor.value();
  return pairs;
}
static uint32_t walk_settings(const bag_map* map) { return walk_bag(map); }

struct client final {
  SLOT_0(client)
  virtual int32_t addObserver(iCfClientObs* o) {
    observer = o;
    destroy(o);  // does nothing
    return 0;
  }
  virtual int32_t post(iCfMsg* message) {
    examine_posted(message);
    return 0;
  }
  iCfClientObs* observer;
};

static client* the_client;

struct carrier final : iCfMsg {
  void* query(const cfName& n) override {
    ++queries;
    return same_text(n.text, u"msg::CfMsgNpc") ? this : nullptr;
  }
  uint64_t queries = 0;
  const unsigned char* packet = nullptr;
};

struct coffer_data final : iCfMsg {
  void* query(const cfName& n) override {
    ++queries;
    return same_text(n.text, u"msg::CfMsgCofferData") ? this : nullptr;
  }
  uint64_t queries = 0, unused = 0;
  int32_t fUpdate = 1, flags = -2, agPid = 4242, agStatus = 2;
  CfSettings settings, default_settings;
  int32_t dbStatus = -1;
};

struct set_values final : iCfMsg {
  void* query(const cfName& n) override {
    ++queries;
    return same_text(n.text, u"msg::CfMsgSetValues") ? this : nullptr;
  }
  uint32_t has_settings = 1, queries = 0;
  CfSettings settings;
};

template <class Object>
static void deliver(Object& object) {
  CHECK(the_client->observer->notify(&object) == 0);
  CHECK(object.references == 2 && object.queries == 3);
}

static void fill(CfSettings& settings, const bag_map* map) {
  auto* const to = reinterpret_cast<unsigned char*>(settings.storage);
  for (size_t i = 0; i < sizeof *map; ++i) to[i] = reinterpret_cast<const unsigned char*>(map)[i];
}

static void deliver_packet(const unsigned char* packet) {
  carrier object;
  object.packet = packet;
  deliver(object);
}

static void deliver_coffer_data(const bag_map* settings, const bag_map* defaults) {
  coffer_data object;
  fill(object.settings, settings);
  fill(object.default_settings, defaults);
  deliver(object);
}

static void deliver_settings(const bag_map* settings) {
  set_values object;
  fill(object.settings, settings);
  deliver(object);
}

struct api final {
  SLOT_0(api)
  virtual void* getInterface(const cfName& name) {
    return same_text(name.text, u"iCfClient.1") ? the_client : nullptr;
  }
};

EXPORTED void* Api() {
  // In memory that is never freed, since the library has no code that runs at its end.
  alignas(client) static unsigned char client_room[sizeof(client)];
  alignas(api) static unsigned char api_room[sizeof(api)];
  the_client = new (client_room) client;
  return new (api_room) api;
}
