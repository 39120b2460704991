#include "tools/request_source.h"

#include <cerrno>
#include <cstring>

#include "json/parser.h"
#include "tools/printable.h"

namespace {

// How much of a request is shown after the position of an error.
constexpr std::size_t excerpt_length = 40;

item_kind kind_of_line(const std::string& line) {
  if (line.find_first_not_of(" \t\r") == std::string::npos) return item_kind::gap;
  return line.front() == '#' ? item_kind::comment : item_kind::request;
}

bool check_size(const request_item& item, std::string& error) {
  if (item.text.size() <= max_request_size) return true;
  error = item.place + " has more than " + std::to_string(max_request_size) + " bytes";
  return false;
}

// The parser works on a copy. It rewrites that, but doesn't move what it hasn't read yet.
bool check_json(const request_item& item, std::string& error) {
  std::string copy = item.text;
  const char* position = copy.data();
  const char* complaint = "the request is empty";
  scoped_node_arena arena;
  if (json_parse(copy.data(), position, complaint, arena) != nullptr) return true;
  const auto offset = static_cast<std::size_t>(position - copy.data());
  error = item.place + ", byte " + std::to_string(offset) + ": " + complaint;
  if (offset < item.text.size()) {
    error += ": " + printable_line(item.text.substr(offset, excerpt_length));
  }
  return false;
}

bool check_item(const request_item& item, bool raw, std::string& error) {
  if (item.kind != item_kind::request) return true;
  return check_size(item, error) && (raw || check_json(item, error));
}

// Reads one line without its end, or the start of a line that is too long for a request. False at
// the end.
bool read_line(std::FILE* file, std::string& line) {
  line.clear();
  int c = std::getc(file);
  if (c == EOF) return false;
  for (; c != EOF && c != '\n' && line.size() <= max_request_size; c = std::getc(file)) {
    line.push_back(static_cast<char>(c));
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

}  // namespace

bool request_source::open(std::string& error) {
  if (options_.file.empty()) return true;
  file_.reset(options_.file == "-" ? stdin : std::fopen(options_.file.c_str(), "rb"));
  if (file_ != nullptr) return true;
  error = "can't read the requests in " + options_.file + ": " + std::strerror(errno);
  return false;
}

bool request_source::next(request_item& item, std::string& error) {
  if (given_ < options_.requests.size()) {
    item.text = options_.requests[given_++];
    item.place = "request " + std::to_string(given_);
    item.kind = item_kind::request;
  } else if (!next_line(item, error)) {
    return false;
  }
  return check_item(item, options_.raw, error);
}

bool request_source::next_line(request_item& item, std::string& error) {
  if (file_ == nullptr) return false;
  if (!read_line(file_.get(), item.text)) {
    if (std::ferror(file_.get()) != 0) error = "can't read on in " + options_.file;
    return false;
  }
  item.kind = kind_of_line(item.text);
  item.place = "line " + std::to_string(++line_);
  return true;
}
