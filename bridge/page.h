// Takes the page object of a request into a website message.
#pragma once

#include "json/node.h"
#include "messages/website.h"

// The page's own members, gathered before they go into the message.
struct page_record {
  wide_string source;
  wide_string title;
  wide_string user_state;
  wide_string document_state;
  wide_string context;
  wide_string before_url;
  wide_string after_url;
  wide_string source_event;
  wide_string source_context;
  wide_string click_source;
  wide_string submit_source;
  std::int32_t fHasMultipleForms = 0;
  std::int32_t fIsPartiallyFilled = 0;
};

// Copies the page that `node` describes into `message`, which is new and empty. False, with the
// message unchanged, if `node` is null or isn't a named container with members; true in all other
// cases. Inputs beyond max_listed_bags are left out. Members that aren't known or are of the wrong
// kind are skipped; of several with one name the last usable one counts.
bool page_json_to_website(const json_node* node, CfMsgWebsite* message);

// True if the member has this name. Then a string replaces `target`, null empties it, and any other
// kind, or a string that can't be converted, leaves it. Requires a member with a name.
bool take_string_member(const json_node& member, const char* key, wide_string& target);

// Enters all eleven strings, empty ones too, and marks the flags that aren't zero.
void store_page_record(const page_record& record, propsW_t& bag);
