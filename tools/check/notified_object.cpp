#include "tools/check/notified_object.h"

#include <string>

#include "messages/agent_interface.h"
#include "messages/commands.h"
#include "messages/records.h"
#include "messages/website.h"
#include "platform/readable_memory.h"

namespace {

constexpr cfName name_of_nobody{u"cfcheck::Nobody"};

constexpr std::size_t message_slots = 9;
constexpr std::size_t settings_slots = 15;

// More than any page needs.
constexpr std::int32_t longest_payload = 64 << 20;

// A text in a bag may be as long as a payload, and is examined as a whole.
constexpr std::uint32_t most_pairs = 100'000;

constexpr char see_layouts[] = "docs/messages.md has the layout; the kit's classes make it.";

// True if there is an object with a table of `slots` operations.
bool has_table(const void* object, std::size_t slots) {
  if (!platform::is_readable(object, sizeof(void*))) return false;
  const auto* const table = *static_cast<const void* const*>(object);
  return platform::is_readable(table, slots * sizeof(void*));
}

bool is_text(const wide_char* text, std::uint32_t length) {
  const std::size_t size = (std::size_t{length} + 1) * sizeof(wide_char);
  return platform::is_readable(text, size) &&
         wide_view(text, length).find(u'\0') == wide_view::npos && text[length] == 0;
}

// What is wrong with a bag; null if nothing is wrong.
const char* fault_of_settings(const CfSettings& settings) {
  if (!has_table(&settings, settings_slots)) return "isn't there";
  const text_map& map = settings.map();
  if (!platform::is_readable(&map, sizeof map)) return "has no map";
  if (map.size() > most_pairs) return "has a size that can't be";
  if (!platform::is_readable(map.begin(), map.size() * sizeof(text_map::pair)))
    return "has pairs that can't be read";
  const text_map::pair* last = nullptr;
  for (const text_map::pair& pair : map) {
    if (!is_text(pair.key, pair.key_length))
      return "has a key that isn't terminated where its length says";
    if (!is_text(pair.value, pair.value_length))
      return "has a value that isn't terminated where its length says";
    if (last != nullptr && !(last->key_text() < pair.key_text())) return "has keys out of order";
    last = &pair;
  }
  return nullptr;
}

class object_examination {
 public:
  object_examination(iCfMsg& object, account& told) : object_(object), told_(told) {}

  void run() {
    object_.addRef();
    if (object_.query(name_of_nobody) != nullptr) {
      return fault("answers-every-name", "query answers to a name that nobody has",
                   "Answer to the names of the object's own classes and records, and to no other.");
    }
    bool is_known = false;
    if (const auto* npc = record<npc_record>("msg::CfMsgNpc", is_known)) look_at(*npc);
    if (const auto* data = record<coffer_data_record>("msg::CfMsgCofferData", is_known))
      look_at(*data);
    if (const auto* values = record<set_values_record>("msg::CfMsgSetValues", is_known))
      look_at(*values);
    if (!is_known) {
      told_.add(severity::warning, "notification-unknown",
                "an object is notified of that answers to none of the host's three names",
                "The host ignores it. See what docs/messages.md says of query.");
    }
  }

 private:
  void fault(const char* id, const std::string& text, const char* advice) {
    told_.add(severity::fault, id, "notify: " + text, advice);
  }

  template <class Record>
  const Record* record(const char* name, bool& is_known) {
    const void* const found = object_.query(Record::type_name);
    if (found == nullptr) return nullptr;
    is_known = true;
    if (platform::is_readable(found, sizeof(Record))) return static_cast<const Record*>(found);
    fault("record-unreadable", std::string("the record ") + name + " can't be read", see_layouts);
    return nullptr;
  }

  void look_at(const npc_record& npc) {
    if (!platform::is_readable(npc.packet, sizeof(npc_packet))) {
      return fault("packet-unreadable", "the packet of msg::CfMsgNpc can't be read", see_layouts);
    }
    const npc_payload payload = payload_of(npc);
    if (payload.length <= 0 || payload.length > longest_payload) {
      return fault("payload-length", "a payload of " + std::to_string(payload.length) + " bytes",
                   "Bytes 84 to 87 of the packet are its length.");
    }
    if (!platform::is_readable(payload.bytes, static_cast<std::size_t>(payload.length))) {
      return fault("payload-length",
                   "a payload can't be read up to its length of " + std::to_string(payload.length) +
                       " bytes",
                   "Bytes 84 to 87 of the packet are its length.");
    }
    look_at(payload);
  }

  void look_at(const npc_payload& payload) {
    cfIStream stream(payload.bytes, payload.length);
    const payload_text type = stream.readWide();
    const auto is = [type](const cfName& name) { return type == wide_view(name.text()); };
    if (is(website_response_name) || is(website_navigate_name)) {
      read_whole<CfMsgWebsite>(stream);
    } else if (is(CfMsgWebsite::type_name)) {
      stream.cursor = stream.begin;
      read_whole<CfMsgWebsite>(stream);
    } else if (is(CfMsgOpenUrl::type_name)) {
      stream.cursor = stream.begin;
      read_whole<CfMsgOpenUrl>(stream);
    } else {
      told_.add(severity::warning, "payload-unknown",
                "notify: a payload begins with no type that the host knows",
                "The host ignores it. docs/messages.md lists the types.");
    }
  }

  template <class Message>
  void read_whole(cfIStream& stream) {
    const message_ref<Message> message = make_message<Message>();
    if (message->read(stream)) return;
    fault("form-damaged", "a form isn't whole, or begins with another type",
          "The host drops it. docs/messages.md has the forms.");
  }

  void look_at(const coffer_data_record& data) {
    look_at(data.settings, "settings");
    look_at(data.default_settings, "default settings");
  }

  void look_at(const set_values_record& values) {
    if (values.has_settings != 0) look_at(values.settings, "settings");
  }

  void look_at(const CfSettings& settings, const char* which) {
    const char* const wrong = fault_of_settings(settings);
    if (wrong != nullptr)
      fault("settings-damaged", std::string("the bag of ") + which + " " + wrong, see_layouts);
  }

  iCfMsg& object_;
  account& told_;
};

}  // namespace

void examine_notified_object(iCfMsg* object, account& told) {
  if (!has_table(object, message_slots)) {
    told.add(severity::fault, "object-unreadable", "notify: there is no object", see_layouts);
    return;
  }
  object_examination(*object, told).run();
}
