// Returns the requests of a session one by one: those of the command line, then the lines of a
// file.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

#include "tools/cfext_options.h"

// Comments, and gaps, which are blank lines, aren't sent.
enum class item_kind { request, comment, gap };

struct request_item {
  item_kind kind = item_kind::request;
  std::string text;
  std::string place;  // where it comes from, for messages
};

class request_source {
 public:
  // `options` must outlive the source.
  explicit request_source(const cfext_options& options) : options_(options) {}

  // Opens the file, if there is one to read. False, with the reason in `error`, if that fails.
  bool open(std::string& error);

  // Reads the next item. False at the end, and, with the reason in `error`, if the file can't be
  // read any further or the item can't be sent.
  bool next(request_item& item, std::string& error);

 private:
  struct closer {
    void operator()(std::FILE* file) const {
      if (file != stdin) std::fclose(file);
    }
  };

  bool next_line(request_item& item, std::string& error);

  const cfext_options& options_;
  std::unique_ptr<std::FILE, closer> file_;
  std::size_t given_ = 0;  // requests of the command line returned so far
  std::size_t line_ = 0;
};
