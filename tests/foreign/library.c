// The same library in C: a table is a struct of function pointers, each of which takes the object
// first.
#include <stddef.h>
#include <stdint.h>
#include <uchar.h>

typedef struct cfName {
  const char16_t* text;
} cfName;

typedef struct cfSink {
  const struct sink_table* table;
} cfSink;
struct sink_table {
  void* (*destroy)(cfSink*, uint32_t flags);
  _Bool (*write_bytes)(cfSink*, const void* bytes, uint64_t size);
};

typedef struct cfOStream {
  uint64_t own;
  cfSink* sink;
  unsigned char own_too, ok;
} cfOStream;

typedef struct cfIStream {
  const void* table;
  const unsigned char *begin, *end, *cursor;
  _Bool ok;
} cfIStream;

typedef struct iCfMsg {
  const struct message_table* table;
  int32_t references;
  uint32_t reserved;
} iCfMsg;
struct message_table {
  void* (*destroy)(iCfMsg*, uint32_t flags);
  int32_t (*release)(iCfMsg*);
  void* (*query)(iCfMsg*, const cfName*);
  cfName* (*name)(const iCfMsg*, cfName* result);
  _Bool (*write)(iCfMsg*, cfOStream*);
  _Bool (*read)(iCfMsg*, cfIStream*);
  int32_t (*spare)(iCfMsg*);
  int32_t (*addRef)(iCfMsg*);
  int32_t (*decRef)(iCfMsg*);
};

typedef struct propsW_t {
  const struct bag_table* table;
} propsW_t;
struct bag_table {
  void* (*destroy_by_flags)(propsW_t*, uint32_t flags);
  void (*destroy)(propsW_t*);
  _Bool (*empty)(const propsW_t*);
  uint64_t (*size)(const propsW_t*);
  _Bool (*add)(propsW_t*, const char16_t* key, const char16_t* value);
  void (*merge)(propsW_t*, const propsW_t* other);
  void (*assign)(propsW_t*, const propsW_t* other);
  void (*clear)(propsW_t*);
  _Bool (*erase)(propsW_t*, const char16_t* key);
  _Bool (*has)(const propsW_t*, const char16_t* key);
  _Bool (*set)(propsW_t*, const char16_t* key, const char16_t* value, _Bool overwrite);
  const char16_t* (*get)(const propsW_t*, const char16_t* key, const char16_t* fallback);
  const struct bag_map* (*map[2])(const propsW_t*);
};

typedef struct CfSettings {
  const struct settings_table* table;
  uint64_t storage[4];
} CfSettings;
struct settings_table {
  void* (*destroy_by_flags)(CfSettings*, uint32_t flags);
  void (*assign)(CfSettings*, const CfSettings* other);
  void (*merge)(CfSettings*, const CfSettings* other);
  void (*destroy)(CfSettings*);
  cfName* (*name)(const CfSettings*, cfName* result);
  void (*clear)(CfSettings*);
  _Bool (*set)(CfSettings*, const char16_t* key, const char16_t* value);
  _Bool (*setEmpty)(CfSettings*, const char16_t* key);
  const char16_t* (*get)(const CfSettings*, const char16_t* key);
  uint64_t (*size)(const CfSettings*);
  const struct bag_map* (*map[2])(const CfSettings*);
  void (*dump)(const CfSettings*, const char16_t* prefix);
};

typedef struct CfWndPos {
  const struct {
    _Bool (*write)(const struct CfWndPos*, cfOStream*);
    _Bool (*read)(struct CfWndPos*, cfIStream*);
  } * table;
} CfWndPos;

typedef struct iCfClientObs {
  const struct {
    void* (*destroy)(struct iCfClientObs*, uint32_t flags);
    int32_t (*notify)(struct iCfClientObs*, iCfMsg* object);
  } * table;
} iCfClientObs;

static int message_write(iCfMsg* message);
static int message_read(iCfMsg* message, const unsigned char* form, size_t size);
static int position_pieces(void* position);
static const char16_t* message_name(iCfMsg* m) {
  cfName result;
  return m->table->name(m, &result)->text;
}
static void* message_query(iCfMsg* m, const char16_t* name) {
  const cfName asked = {name};
  return m->table->query(m, &asked);
}
static int message_spare(iCfMsg* m) { return m->table->spare(m); }
static int message_add_reference(iCfMsg* m) { return m->table->addRef(m); }
static int message_drop_reference(iCfMsg* m) { return m->table->decRef(m); }
static int message_release(iCfMsg* m) { return m->table->release(m); }

static int bag_empty(propsW_t* b) { return b->table->empty(b); }
static uint64_t bag_size(propsW_t* b) { return b->table->size(b); }
static int bag_has(propsW_t* b, const char16_t* k) { return b->table->has(b, k); }
static int bag_add(propsW_t* b, const char16_t* k, const char16_t* v) {
  return b->table->add(b, k, v);
}
static int bag_set(propsW_t* b, const char16_t* k, const char16_t* v, int overwrite) {
  return b->table->set(b, k, v, overwrite != 0);
}
static const char16_t* bag_get(propsW_t* b, const char16_t* k, const char16_t* fallback) {
  return b->table->get(b, k, fallback);
}
static int bag_erase(propsW_t* b, const char16_t* k) { return b->table->erase(b, k); }
static void bag_merge(propsW_t* b, propsW_t* other) { b->table->merge(b, other); }
static void bag_assign(propsW_t* b, propsW_t* other) { b->table->assign(b, other); }
static void bag_clear(propsW_t* b) { b->table->clear(b); }
static const struct bag_map* bag_map_of(propsW_t* b, int again) { return b->table->map[again](b); }

static const char16_t* settings_name(CfSettings* s) {
  cfName result;
  return s->table->name(s, &result)->text;
}
static uint64_t settings_size(CfSettings* s) { return s->table->size(s); }
static int settings_set(CfSettings* s, const char16_t* k, const char16_t* v) {
  return s->table->set(s, k, v);
}
static int settings_set_empty(CfSettings* s, const char16_t* k) { return s->table->setEmpty(s, k); }
static const char16_t* settings_get(CfSettings* s, const char16_t* k) {
  return s->table->get(s, k);
}
static void settings_merge(CfSettings* s, CfSettings* other) { s->table->merge(s, other); }
static void settings_assign(CfSettings* s, CfSettings* other) { s->table->assign(s, other); }
static void settings_clear(CfSettings* s) { s->table->clear(s); }
static void settings_dump(CfSettings* s, const char16_t* prefix) { s->table->dump(s, prefix); }
static const struct bag_map* settings_map_of(CfSettings* s, int again) {
  return s->table->map[again](s);
}
static uint32_t walk_bag(const struct bag_map* map);
static uint32_t walk_settings(const struct bag_map* map);
static void deliver_packet(const unsigned char* packet);
static void deliver_coffer_data(const struct bag_map* settings, const struct bag_map* defaults);
static void deliver_settings(const struct bag_map* settings);

#include "examination.h"

static void* leave_alone(cfSink* sink, uint32_t flags) { return (void)flags, sink; }
static _Bool take(cfSink* sink, const void* bytes, uint64_t size) {
  return (void)sink, collect(bytes, size) != 0;
}
static const struct sink_table sink_table = {leave_alone, take};

static int message_write(iCfMsg* message) {
  cfSink sink = {&sink_table};
  cfOStream stream = {~(uint64_t)0, &sink, 0xEE, 1};
  const int written = message->table->write(message, &stream);
  CHECK(stream.own == ~(uint64_t)0 && stream.own_too == 0xEE);
  return written;
}

static int message_read(iCfMsg* message, const unsigned char* form, size_t size) {
  cfIStream stream = {0, form, form + size, form, 1};
  const int whole = message->table->read(message, &stream);
  CHECK(whole == stream.ok && (!whole || stream.cursor == stream.end));
  return whole;
}

static int position_pieces(void* position) {
  cfSink sink = {&sink_table};
  cfOStream stream = {0, &sink, 0, 1};
  collected_size = 0, collected_pieces = 0, refused = 100;
  CHECK(((CfWndPos*)position)->table->write(position, &stream));
  return collected_pieces;
}

static uint32_t walk_bag(const bag_map* map) {
  uint32_t pairs = 0;
  while (pairs < map->size && map->pairs[pairs].key && map->pairs[pairs].value) ++pairs;
  return pairs;
}
static uint32_t walk_settings(const bag_map* map) { return walk_bag(map); }

static const bag_map* own_map(const CfSettings* s) { return (const bag_map*)s->storage; }
static const struct settings_table own_settings = {.map = {own_map, own_map}};

static CfSettings settings_over(const bag_map* map) {
  CfSettings made = {&own_settings, {0}};
  for (size_t i = 0; i < sizeof *map; ++i) ((char*)made.storage)[i] = ((const char*)map)[i];
  return made;
}

// Answers to one name with the record that is the whole object.
typedef struct {
  iCfMsg base;
  uint32_t has_settings, queries;
  union {
    struct {
      const unsigned char* packet;
    } carrier;
    struct {
      uint64_t unused;
      int32_t fUpdate, flags, agPid, agStatus;
      CfSettings settings, default_settings;
      int32_t dbStatus;
    } data;
    CfSettings settings;
  } record;
  const char16_t* answers;
} delivered;

static void* answer(iCfMsg* object, const cfName* name) {
  delivered* const own = (delivered*)object;
  ++own->queries;
  return same_text(name->text, own->answers) ? own : 0;
}
static int32_t count(iCfMsg* object) { return ++object->references; }
static const struct message_table delivered_table = {.query = answer, .addRef = count};

static struct {
  const void* table;
  iCfClientObs* observer;
} client;

static void deliver(delivered* object, const char16_t* name) {
  object->base.table = &delivered_table;
  object->answers = name;
  CHECK(client.observer->table->notify(client.observer, &object->base) == 0);
  CHECK(object->base.references == 1 && object->queries == 3);
}

static void deliver_packet(const unsigned char* packet) {
  delivered object = {.record.carrier = {packet}};
  deliver(&object, u"msg::CfMsgNpc");
}

static void deliver_coffer_data(const bag_map* settings, const bag_map* defaults) {
  delivered object = {
      .record.data = {0, 1, -2, 4242, 2, settings_over(settings), settings_over(defaults), -1}};
  deliver(&object, u"msg::CfMsgCofferData");
}

static void deliver_settings(const bag_map* settings) {
  delivered object = {.has_settings = 1, .record.settings = settings_over(settings)};
  deliver(&object, u"msg::CfMsgSetValues");
}

static int32_t add_observer(void* self, iCfClientObs* observer) {
  (void)self;
  client.observer = observer;
  observer->table->destroy(observer, 1);  // does nothing
  return 0;
}
static int32_t post(void* self, iCfMsg* message) {
  (void)self;
  examine_posted(message);
  return 0;
}
static void* get_interface(void* self, const cfName* name) {
  (void)self;
  return same_text(name->text, u"iCfClient.1") ? &client : 0;
}

static const struct {
  void* unused;
  int32_t (*addObserver)(void*, iCfClientObs*);
  int32_t (*post)(void*, iCfMsg*);
} client_table = {0, add_observer, post};
static const struct {
  void* unused;
  void* (*getInterface)(void*, const cfName*);
} api_table = {0, get_interface};

EXPORTED void* Api(void) {
  static const void* api = &api_table;
  client.table = &client_table;
  return &api;
}
