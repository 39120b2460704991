#include "tools/setup/recording.h"

#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/module_folder.h"
#include "tools/tap_settings.h"

namespace {

namespace fs = std::filesystem;

// In one step: a copy that a browser has just started stays as it is.
bool copy_program(const std::string& from, const std::string& to, std::string& error) {
  std::error_code failure;
  const std::string temporary = to + ".new";
  fs::copy_file(from, temporary, fs::copy_options::overwrite_existing, failure);
  if (!failure) fs::rename(temporary, to, failure);
  if (!failure) return true;
  error = "can't copy " + from + " to " + to + ": " + failure.message();
  return false;
}

}  // namespace

std::string recording_program(const std::string& folder) {
  return platform::path_below(folder, platform::program_file_name("cftap"));
}

bool prepare_recording(const std::string& folder, const std::string& host, bool with_values,
                       std::string& error) {
  tap_settings settings;
  settings.host = host;
  settings.with_values = with_values;
  const std::string program = platform::module_folder() + platform::program_file_name("cftap");
  return platform::write_file(platform::path_below(folder, tap_settings_name),
                              tap_settings_text(settings), platform::folder_readers::owner,
                              error) &&
         copy_program(program, recording_program(folder), error);
}
