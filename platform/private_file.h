// A new file for what only its user may see, written as it comes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace platform {

class private_file {
 public:
  // Makes the file, which nobody but its user may read or write. Null, with the reason in `error`,
  // if that fails; `exists` then tells whether something is there already, be it a link that leads
  // nowhere.
  static std::unique_ptr<private_file> create(const std::string& path, bool& exists,
                                              std::string& error);
  virtual ~private_file() = default;

  // Adds the text at the end. False, with the reason in `error`, if not all of it got there.
  virtual bool append(std::string_view text, std::string& error) = 0;
};

}  // namespace platform
