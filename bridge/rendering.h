// Renders what the agent sends as JSON pairs. The caller names and closes the container around
// them.
#pragma once

#include "json/pair_stream.h"
#include "messages/commands.h"
#include "messages/records.h"
#include "messages/settings.h"
#include "messages/website.h"

// The page's sender, its properties under the bag's own keys, its inputs under the names that
// requests use, and an empty list of items. A value that can't be converted becomes null; a pair
// whose key can't be is left out.
pair_stream& render_website(pair_stream& stream, const CfMsgWebsite& message);

// Every setting, in key order.
pair_stream& render_settings(pair_stream& stream, const CfSettings& settings);

// The five numbers and two settings bags of the record.
pair_stream& render_coffer_data(pair_stream& stream, const coffer_data_record& data);

// The URL and the identifier that goes with it.
pair_stream& render_open_url(pair_stream& stream, const CfMsgOpenUrl& message);
