#include "agent/responder.h"

#include "agent/page_filling.h"
#include "agent/typed_login.h"

namespace {

// What this agent reports as its state; the host gives the numbers no meaning.
enum agent_status : std::int32_t { agent_running = 1 };
enum db_status : std::int32_t { db_locked = 0, db_unlocked = 1 };

constexpr std::uint32_t lock_command = 5;

template <class Message>
Message* as(iCfMsg& message) {
  return static_cast<Message*>(message.query(Message::type_name));
}

// Null for a code that none of the host's requests has.
const wide_char* console_address(std::uint32_t code) {
  switch (code) {
    case console_open:
      return u"coffer://console/open";
    case console_configure:
      return u"coffer://console/configure";
    case console_settings:
      return u"coffer://console/settings";
    default:
      return nullptr;
  }
}

// Different for each console of a process, but the same in every run.
wide_string console_id(std::uint32_t number) {
  wide_string id = u"console-";
  for (const char digit : std::to_string(number)) id.push_back(static_cast<wide_char>(digit));
  return id;
}

}  // namespace

owned_message responder::greet() { return state(false); }

owned_message responder::respond(iCfMsg& request) {
  if (auto* const page = as<CfMsgWebsite>(request)) return answer_page(*page);
  if (const auto* const console = as<CfMsgRunConsole>(request)) return open_console(*console);
  if (const auto* const command = as<CfMsgCfDbCmd>(request)) return run_command(*command);
  if (as<CfMsgGetSettings>(request) != nullptr) return settings();
  if (as<CfMsgUnLockDb>(request) != nullptr) {
    // There is no dialog, and so no password to ask for.
    coffer_.unlock();
    return state(true);
  }
  return nullptr;
}

// The agent lives in the host's process and has no id of its own to report.
owned_message responder::state(bool changed) const {
  auto state = make_owned<received_object<coffer_data_record>>();
  coffer_data_record& data = state->record;
  data.fUpdate = changed ? 1 : 0;
  data.agStatus = agent_running;
  data.dbStatus = coffer_.locked() ? db_locked : db_unlocked;
  data.settings.assign(coffer_.settings);
  data.default_settings.assign(CfDummySettings());
  return state;
}

owned_message responder::settings() const {
  auto values = make_owned<received_object<set_values_record>>();
  values->record.has_settings = 1;
  values->record.settings.assign(CfDummySettings());
  values->record.settings.merge(coffer_.settings);
  return values;
}

// A drop-down is answered as one whatever else the page says; then come pages that want to go to a
// login; any other page may have been submitted. The answer is always the page as the coffer fills
// it.
owned_message responder::answer_page(CfMsgWebsite& page) {
  const cfName* outer = nullptr;
  if (wide_view(page.props.get(u"user-state", u"")) == u"drop-down") {
    outer = &website_response_name;
  } else if (page.props.has(u"navigate-login")) {
    outer = &website_navigate_name;
  } else if (is_submitted(page)) {
    const std::optional<login> typed = typed_login(page);
    if (typed) coffer_.keep_typed(page.props.get(u"source", u""), *typed);
  }
  fill_page(page, coffer_);
  return carry(page, outer);
}

owned_message responder::open_console(const CfMsgRunConsole& request) {
  const wide_char* const address = console_address(request.consoleCode);
  if (address == nullptr) return nullptr;
  CfMsgOpenUrl message;
  message.url = address;
  message.uuid = console_id(++consoles_opened_);
  return carry(message);
}

owned_message responder::run_command(const CfMsgCfDbCmd& request) {
  if (request.command != lock_command) return nullptr;
  coffer_.lock();
  return state(true);
}
