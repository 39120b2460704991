#include "agent/form_reader.h"

#include "messages/commands.h"
#include "messages/library/byte_sink.h"
#include "messages/website.h"

namespace {

struct form_type {
  cfName name;
  owned_message (*make)();
};

template <class Message>
owned_message make() {
  return make_owned<Message>();
}

owned_message make_console() { return make_owned<CfMsgRunConsole>(0U); }

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
owned_message message_for(const byte_list& form) {
  cfIStream stream = stream_over(form);
  const payload_text type = stream.readWide();
  for (const form_type& known : form_types) {
    if (type == wide_view(known.name.text())) return known.make();
  }
  return nullptr;
}

owned_message decode(const byte_list& form) {
  owned_message message = message_for(form);
  if (message == nullptr) return nullptr;
  cfIStream stream = stream_over(form);
  return message->read(stream) ? std::move(message) : nullptr;
}

owned_message copy_of(iCfMsg& posted, std::size_t& form_size) {
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

owned_message take_message(iCfMsg* posted, std::size_t& form_size) {
  if (posted == nullptr) return nullptr;
  const message_ref<iCfMsg> reference(posted);
  return copy_of(*posted, form_size);
}
