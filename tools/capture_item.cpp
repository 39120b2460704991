#include "tools/capture_item.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "json/parser.h"
#include "json/writer.h"
#include "tools/message_text.h"

namespace {

constexpr std::array<const char*, 4> kind_names = {"start", "message", "unread", "end"};

pair_stream& put_number(pair_stream& members, std::string_view key, std::uint64_t number) {
  return members << json_quote(key) << ':' << std::to_string(number) << ',';
}

void put_start(pair_stream& members, const capture_item& item) {
  pair_stream arguments;
  for (const std::string& argument : item.arguments) arguments << json_quote(argument) << ',';
  json_put_int(members, "format", item.format);
  json_put_string(members, "host", item.host);
  json_put_array(members, "arguments", arguments);
  members << (item.with_values ? R"("values":true,)" : R"("values":false,)");
}

void put_message(pair_stream& members, const capture_item& item) {
  pair_stream runs;
  std::uint64_t count = 0;
  for (const frame_run& run : item.frames) {
    runs << '[' << std::to_string(run.size) << ',' << std::to_string(run.count) << "],";
    count += run.count;
  }
  put_number(members, "frames", count);
  json_put_array(members, "sizes", runs);
  members << R"("message":)" << item.message << ',';
}

std::uint64_t number_of(const json_node& node) {
  return node.kind == kind_int ? static_cast<std::uint32_t>(node.value.integer) : 0;
}

frame_run run_of(const json_node& pair) {
  if (pair.first_child == nullptr || pair.first_child->next_sibling == nullptr) return {};
  return {number_of(*pair.first_child), number_of(*pair.first_child->next_sibling)};
}

void take_text(std::string_view name, const char* text, capture_item& item) {
  if (name == "time") item.time = text;
  if (name == "from") item.from_host = std::string_view(text) == "host";
  if (name == "host") item.host = text;
  if (name == "reason") item.reason = text;
}

void take_list(std::string_view name, const json_node& list, capture_item& item) {
  for (const json_node* child = list.first_child; child != nullptr; child = child->next_sibling) {
    if (name == "sizes") item.frames.push_back(run_of(*child));
    if (name == "arguments" && child->kind == kind_string) {
      item.arguments.emplace_back(child->value.string);
    }
  }
}

void take_member(const json_node& member, capture_item& item) {
  const std::string_view name = member.name == nullptr ? "" : member.name;
  if (member.kind == kind_string) take_text(name, member.value.string, item);
  if (member.kind == kind_array) take_list(name, member, item);
  if (name == "message") item.message = node_text(member, {.hide_values = false});
  if (name == "values" && member.kind == kind_bool) item.with_values = member.value.boolean != 0;
  if (member.kind != kind_int) return;
  if (name == "format") item.format = member.value.integer;
  if (name == "bytes") item.bytes = number_of(member);
  if (name == "exit") item.exit_value = member.value.integer;
}

bool take_kind(const json_node& root, capture_item& item) {
  const json_node* const first = root.first_child;
  if (first == nullptr || first->name == nullptr || std::string_view(first->name) != "kind" ||
      first->kind != kind_string) {
    return false;
  }
  for (std::size_t i = 0; i < kind_names.size(); ++i) {
    if (std::string_view(first->value.string) != kind_names[i]) continue;
    item.kind = static_cast<capture_kind>(i);
    return true;
  }
  return false;
}

}  // namespace

std::string capture_time_text(capture_time time) {
  using namespace std::chrono;
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(floor<microseconds>(time - day));
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()),
                static_cast<int>(clock.subseconds().count()));
  return text.data();
}

std::string capture_line(const capture_item& item) {
  pair_stream members;
  json_put_string(members, "kind", kind_names[static_cast<std::size_t>(item.kind)]);
  json_put_string(members, "time", item.time);
  if (item.kind == capture_kind::start) put_start(members, item);
  if (item.kind == capture_kind::message || item.kind == capture_kind::unread) {
    json_put_string(members, "from", item.from_host ? "host" : "browser");
  }
  if (item.kind == capture_kind::message) put_message(members, item);
  if (item.kind == capture_kind::unread) put_number(members, "bytes", item.bytes);
  if (item.exit_value.has_value()) json_put_int(members, "exit", *item.exit_value);
  if (!item.reason.empty()) json_put_string(members, "reason", item.reason);
  return json_close_object(members);
}

std::optional<capture_item> parse_capture_line(std::string line, std::string& error) {
  const char* position = nullptr;
  const char* description = "it is empty";
  scoped_node_arena nodes;
  const json_node* const root = json_parse(line.data(), position, description, nodes);
  capture_item item;
  if (root == nullptr || !take_kind(*root, item)) {
    error = root == nullptr ? description : "it has no known \"kind\" in front";
    return std::nullopt;
  }
  for (const json_node* child = root->first_child; child != nullptr; child = child->next_sibling) {
    take_member(*child, item);
  }
  if (item.kind != capture_kind::start || item.format == capture_format) return item;
  error = "format " + std::to_string(item.format) + " is newer than this program";
  return std::nullopt;
}
