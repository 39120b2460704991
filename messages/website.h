// The working message of the bridge: a web page and its form inputs, in both directions.
#pragma once

#include <vector>

#include "messages/message.h"
#include "messages/property_bag.h"
#include "messages/window_position.h"

class CfMsgWebsite final : public message_of<CfMsgWebsite, CfMsgNpcomm> {
 public:
  static constexpr cfName type_name{u"msg::CfMsgWebsite"};

  std::uint32_t guard = 0xA5A5A5A5;  // separates the parts of the form; not checked when read
  wide_string sender;                // from the extension and back to it, unchanged
  wide_string auxText;               // on the wire, but not for the extension
  propsW_t props;                    // the page's properties
  std::vector<propsW_t> inputs;      // one bag for each form input, in page order
  CfWndPos pos;

  bool write(cfOStream& s) override;
  bool read(cfIStream& s) override;
};

message_ref<CfMsgWebsite> make_website();
