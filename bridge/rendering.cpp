#include "bridge/rendering.h"

#include "bridge/input_record.h"
#include "json/writer.h"
#include "transport/codecs/text.h"

namespace {

// Writes the entries of a property or settings bag, each under its own key.
void render_entries(pair_stream& stream, const text_map& entries) {
  std::string key;
  for (const text_map::pair& entry : entries) {
    if (wide_to_utf8(key, entry.key_text())) {
      json_put_wide(stream, std::string_view(key), entry.value_text());
    }
  }
}

void render_input(pair_stream& stream, const propsW_t& bag) {
  const input_record record = load_input_record(bag);
  json_begin(stream, '{');
  for (const input_field& field : input_fields) {
    json_put_wide(stream, field.json_key, record.*field.member);
  }
  json_end(stream, '}');
}

void render_bag(pair_stream& stream, const char* key, const CfSettings& settings) {
  json_begin(stream, key, '{');
  json_end(render_settings(stream, settings), '}');
}

}  // namespace

pair_stream& render_website(pair_stream& stream, const CfMsgWebsite& message) {
  json_put_wide(stream, "sender", message.sender);
  render_entries(stream, message.props.map());
  json_begin(stream, "inputs", '[');
  for (const propsW_t& bag : message.inputs) render_input(stream, bag);
  json_end(stream, ']');
  return json_put_array(stream, "dbItems", pair_stream());
}

pair_stream& render_settings(pair_stream& stream, const CfSettings& settings) {
  render_entries(stream, settings.map());
  return stream;
}

pair_stream& render_coffer_data(pair_stream& stream, const coffer_data_record& data) {
  json_put_int(stream, "fUpdate", data.fUpdate);
  json_put_int(stream, "flags", data.flags);
  json_put_int(stream, "agPid", data.agPid);
  json_put_int(stream, "agStatus", data.agStatus);
  json_put_int(stream, "dbStatus", data.dbStatus);
  render_bag(stream, "settings", data.settings);
  render_bag(stream, "default_settings", data.default_settings);
  return stream;
}

pair_stream& render_open_url(pair_stream& stream, const CfMsgOpenUrl& message) {
  json_put_wide(stream, "url", message.url);
  return json_put_wide(stream, "uuid", message.uuid);
}
