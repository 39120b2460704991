#include "tools/report.h"

#include <algorithm>

#include "json/writer.h"
#include "tools/printable.h"
#include "transport/codecs/text.h"

namespace {

const char* name_of(severity weight) {
  switch (weight) {
    case severity::good:
      return "good";
    case severity::note:
      return "note";
    case severity::warning:
      return "warning";
    case severity::fault:
      return "fault";
  }
  return "";
}

// The texts quote names of files and manifests, which may hold any bytes, but JSON must be UTF-8.
void put_text(pair_stream& members, const json_name& key, const std::string& text) {
  wide_string well_formed;
  utf8_to_wide(well_formed, text.data(), static_cast<std::uint32_t>(text.size()));
  json_put_wide(members, key, well_formed);
}

// The texts quote manifests, which anybody may have written.
std::string line_of(const report_entry& entry) {
  std::string line;
  if (*entry.subject != '\0') line.append(entry.subject).append(": ");
  if (entry.weight >= severity::warning) line.append(name_of(entry.weight)).append(": ");
  line += printable_line(entry.text);
  if (entry.weight >= severity::warning) line.append(" [").append(entry.id).append("]");
  line += '\n';
  if (!entry.advice.empty()) line.append("    ").append(printable_line(entry.advice)).append("\n");
  return line;
}

}  // namespace

bool report::has_faults() const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [](const report_entry& entry) { return entry.weight == severity::fault; });
}

std::string report::as_text() const {
  std::string text;
  for (const report_entry& entry : entries_) text += line_of(entry);
  return text;
}

std::string report::as_json() const {
  pair_stream list;
  for (const report_entry& entry : entries_) {
    pair_stream members;
    if (subject_ != nullptr) json_put_string(members, subject_, entry.subject);
    json_put_string(members, "severity", name_of(entry.weight));
    json_put_string(members, "id", entry.id);
    put_text(members, "text", entry.text);
    put_text(members, "advice", entry.advice);
    list << json_close_object(members) << ',';
  }
  pair_stream whole;
  json_put_string(whole, "command", command_);
  json_put_string(whole, "result", has_faults() ? "fault" : "good");
  json_put_array(whole, "entries", list);
  return json_close_object(whole) + '\n';
}
