#include "agent/form_reader.h"

#include "agent/byte_sink.h"
#include "messages/commands.h"
#include "messages/website.h"

namespace {

struct form_type {
  cfName name;
  std::unique_ptr<iCfMsg> (*make)();
};

template <class Message>
std::unique_ptr<iCfMsg> make() {
  return std::make_unique<Message>();
}

std::unique_ptr<iCfMsg> make_console() { return std::make_unique<CfMsgRunConsole>(0); }

constexpr form_type form_types[] = {
    {CfMsgWebsite::type_name, make<CfMsgWebsite>},
    {CfMsgRunConsole::type_name, make_console},
    {CfMsgCfDbCmd::type_name, make<CfMsgCfDbCmd>},
    {CfMsgUnLockDb::type_name, make<CfMsgUnLockDb>},
};

cfIStream stream_over(const byte_list& bytes) {
  return {bytes.data(), static_cast<std::ptrdiff_t>(bytes.size())};
}

// An empty message of the type that the form begins with, or null.
std::unique_ptr<iCfMsg> message_for(const byte_list& form) {
  cfIStream stream = stream_over(form);
  const payload_text type = stream.readWide();
  for (const form_type& known : form_types) {
    if (type == wide_view(known.name.text())) return known.make();
  }
  return nullptr;
}

std::unique_ptr<iCfMsg> decode(const byte_list& form) {
  std::unique_ptr<iCfMsg> message = message_for(form);
  if (message == nullptr) return nullptr;
  cfIStream stream = stream_over(form);
  return message->read(stream) ? std::move(message) : nullptr;
}

std::unique_ptr<iCfMsg> copy_of(iCfMsg& posted, std::size_t& form_size) {
  byte_sink sink;
  cfOStream stream = sink.stream();
  const bool has_form = posted.write(stream);
  const byte_list form = sink.take();
  form_size = form.size();
  if (has_form) return decode(form);
  // The one request without a form.
  if (posted.query(CfMsgGetSettings::type_name) != nullptr) return make<CfMsgGetSettings>();
  return nullptr;
}

}  // namespace

std::unique_ptr<iCfMsg> take_message(iCfMsg* posted, std::size_t& form_size) {
  if (posted == nullptr) return nullptr;
  std::unique_ptr<iCfMsg> copy = copy_of(*posted, form_size);
  posted->release();
  return copy;
}
