// A client library that knows one login. It fills that into every login page of its site, and does
// nothing else. Start from it to write a library of your own.

#include "messages/agent_interface.h"
#include "messages/library/byte_sink.h"
#include "messages/library/received_object.h"
#include "messages/website.h"

namespace {

constexpr wide_view site = u"https://example.com/";
constexpr wide_char user[] = u"example";
constexpr wide_char password[] = u"example password";

// The page that was posted, as a message of our own. The library doesn't look into the host's
// object, but asks it for its form, which is the same for every compiler.
bool read_page(iCfMsg& posted, CfMsgWebsite& page) {
  byte_sink form;
  cfOStream out = form.stream();
  if (!posted.write(out)) return false;
  cfIStream in(form.bytes().data(), static_cast<std::ptrdiff_t>(form.bytes().size()));
  return page.read(in);
}

// "value" is what the page's input gets; "cf-value" and "cf-schema" tell the extension what it is.
void fill(propsW_t& input, const wide_char* schema, const wide_char* value) {
  input.set(u"value", value, true);
  input.set(u"cf-value", value, true);
  input.set(u"cf-schema", schema, true);
}

// True if the page belongs to the site and has an input for the login.
bool fill_page(CfMsgWebsite& page) {
  const wide_view source = page.props.get(u"source", u"");
  if (source.substr(0, site.size()) != site) return false;
  bool filled = false;
  for (propsW_t& input : page.inputs) {
    const wide_view type = input.get(u"type", u"");
    if (type == u"password") {
      fill(input, u"password", password);
    } else if (type == u"text" || type == u"email") {
      fill(input, u"user", user);
    } else {
      continue;
    }
    filled = true;
  }
  return filled;
}

class client final : public implements<client, iCfClient> {
 public:
  std::int32_t addObserver(iCfClientObs* observer) override {
    observer_ = observer;
    return 0;
  }

  // The message comes with the host's reference, which is given back once everything has been read.
  std::int32_t post(iCfMsg* message) override {
    CfMsgWebsite page;
    const bool has_page = read_page(*message, page);
    message->release();
    if (!has_page || !fill_page(page)) return 0;
    // `notify` may be called from here or from any other thread. The object must live until the
    // call returns.
    if (const auto object = carry(page)) observer_->notify(object.get());
    return 0;
  }

 private:
  iCfClientObs* observer_ = nullptr;
};

class root final : public implements<root, cfApi> {
 public:
  void* getInterface(const cfName& name) override {
    return name == client_interface ? static_cast<iCfClient*>(&client_) : nullptr;
  }

 private:
  client client_;
};

}  // namespace

// Nobody frees the root object; it is destroyed when the library is unloaded.
extern "C" cfApi* Api() {
  static root instance;
  return &instance;
}
