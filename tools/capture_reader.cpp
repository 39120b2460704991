#include "tools/capture_reader.h"

std::optional<capture_item> capture_reader::next(std::string& error) {
  std::string line;
  const bool complete = read_line(line);
  if (line.empty() && std::feof(file_) != 0) return std::nullopt;
  const std::string place = "line " + std::to_string(++line_) + " of the capture ";
  if (!complete) {
    error = place + "isn't whole";
    return std::nullopt;
  }
  auto item = parse_capture_line(std::move(line), error);
  if (!item.has_value()) error = place + "isn't in order: " + error;
  return item;
}

int capture_reader::next_byte() {
  return at_ < ahead_.size() ? static_cast<unsigned char>(ahead_[at_++]) : std::getc(file_);
}

// False for a line that isn't terminated.
bool capture_reader::read_line(std::string& line) {
  for (int c = next_byte(); line.size() < max_capture_line; c = next_byte()) {
    if (c == '\n') return true;
    if (c == EOF) return false;
    line.push_back(static_cast<char>(c));
  }
  return false;
}
