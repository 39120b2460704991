// The working message of the bridge: a web page and its form inputs, in both directions.
#pragma once

#include <vector>

#include "messages/message.h"
#include "messages/property_bag.h"
#include "messages/window_position.h"

class CfMsgWebsite final : public CfMsgNpcomm {
 public:
  static constexpr cfName type_name{u"msg::CfMsgWebsite"};

  std::uint32_t guard = 0xA5A5A5A5;  // separates the parts of the form; not checked when read
  wide_string sender;                // from the extension and back to it, unchanged
  wide_string auxText;               // on the wire, but not for the extension
  propsW_t props;                    // the page's properties
  std::vector<propsW_t> inputs;      // one bag for each form input, in page order
  CfWndPos pos;

  std::int32_t release() override;
  void* query(const cfName& n) override;
  cfName name() const override;
  bool write(cfOStream& s) override;
  bool read(cfIStream& s) override;
};

// A new, empty message with one reference, which is the caller's.
CfMsgWebsite* make_website();
