// Translates the page object of a request into a website message.
#pragma once

#include "json/node.h"
#include "messages/website.h"

// The page's own members, gathered before they go into the message. The texts lie in the memory of
// the message's properties.
struct page_record {
  wide_view sender;
  wide_view source;
  wide_view title;
  wide_view user_state;
  wide_view document_state;
  wide_view context;
  wide_view before_url;
  wide_view after_url;
  wide_view source_event;
  wide_view source_context;
  wide_view click_source;
  wide_view submit_source;
  wide_view navigate_login;  // null unless the page has it
  std::int32_t fHasMultipleForms = 0;
  std::int32_t fIsPartiallyFilled = 0;
};

// Copies the page that `node` describes into `message`, which is new and empty. False, with the
// message unchanged, if `node` is null or isn't a named container with members; otherwise true.
// Inputs beyond max_listed_bags are left out. Unknown members and members of the wrong kind are
// skipped. If several have the same name the last usable one counts, except that all lists of
// inputs do.
bool page_json_to_website(const json_node* node, CfMsgWebsite* message);

// True if the member has this name. If so, a string replaces `target`, converted in the memory of
// `bag`; null empties it; any other kind, or a string that can't be converted, leaves it as it is.
// The member must have a name, and `key` be a literal.
bool take_string_member(const json_node& member, std::string_view key, wide_view& target,
                        text_map::filler& bag);

// Writes the eleven strings that have a key in the bag, empty ones too. Flags are stored elsewhere.
void store_page_record(const page_record& record, text_map::filler& bag);
