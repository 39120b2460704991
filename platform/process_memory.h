// What a process occupies, for measurements.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// Memory of the process that is in use, in bytes; 0 if it has ended or can't be looked at.
std::size_t resident_memory(std::int64_t process_id);

}  // namespace platform
