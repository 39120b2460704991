#include "platform/process_memory.h"

#include <unistd.h>

#include <fstream>
#include <string>

namespace platform {

std::size_t resident_memory(std::int64_t process_id) {
  std::ifstream statm("/proc/" + std::to_string(process_id) + "/statm");
  std::size_t size = 0;
  std::size_t resident = 0;
  statm >> size >> resident;
  return statm ? resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}

}  // namespace platform
