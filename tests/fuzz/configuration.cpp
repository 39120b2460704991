// The configuration file and manifests, as the host and its setup program read them.

#include "platform/portable/ini.h"
#include "tests/fuzz/fuzzing.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/manifest.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(text_of(data, size));
  const auto found = find_ini_value(text, "coffer", "dump");
  require(!found || (text.find('[') != text.npos && text.find(*found) != text.npos),
          "a value stands in a section of the text");
  require(find_ini_value("[COFFER]\nDump = '1'\n" + text, "coffer", "dump") == "1",
          "the first value counts");

  const id_form form = size % 2 == 0 ? id_form::chromium : id_form::firefox;
  const std::string path = text.c_str();
  std::string error;
  const auto read = parse_manifest(text, form, error);
  require(read.has_value() == error.empty(), "what can't be read is explained");
  if (!is_utf8(path)) return 0;
  const auto own = parse_manifest(manifest_text(path, form, {"first", path}), form, error);
  require(own && own->name == host_name && own->path == path && own->type == "stdio" &&
              own->allowed && own->allowed->size() == 2 &&
              own->allowed->back() == origin_of(path, form),
          "a manifest is read as it was written");
  return 0;
}
