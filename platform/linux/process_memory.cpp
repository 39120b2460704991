#include "platform/process_memory.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace platform {
namespace {

std::size_t entries_in(std::int64_t process_id, const char* folder) {
  namespace fs = std::filesystem;
  std::error_code failed;
  const fs::directory_iterator entries("/proc/" + std::to_string(process_id) + folder, failed);
  return failed ? 0 : static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

std::size_t resident_memory(std::int64_t process_id) {
  std::ifstream statm("/proc/" + std::to_string(process_id) + "/statm");
  std::size_t size = 0;
  std::size_t resident = 0;
  statm >> size >> resident;
  return statm ? resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}

std::size_t peak_memory(std::int64_t process_id) {
  constexpr std::size_t unit = 1024;
  std::ifstream status("/proc/" + std::to_string(process_id) + "/status");
  std::size_t peak = 0;
  for (std::string word; status >> word;) {
    if (word == "VmHWM:" && status >> peak) return peak * unit;
  }
  return 0;
}

std::size_t open_files(std::int64_t process_id) { return entries_in(process_id, "/fd"); }

std::size_t running_threads(std::int64_t process_id) { return entries_in(process_id, "/task"); }

}  // namespace platform
