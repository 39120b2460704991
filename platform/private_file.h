// A new file that only its user may see, written as data comes in.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace platform {

class private_file {
 public:
  // Creates the file; nobody but its user may read or write it. Null, with the reason in `error`,
  // on failure; `exists` then tells whether something is there already, even a dangling link.
  static std::unique_ptr<private_file> create(const std::string& path, bool& exists,
                                              std::string& error);
  virtual ~private_file() = default;

  // Appends the text. False, with the reason in `error`, if not all of it was written.
  virtual bool append(std::string_view text, std::string& error) = 0;
};

}  // namespace platform
