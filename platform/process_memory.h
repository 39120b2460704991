// The resources that a process uses, for measurements.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// Memory of the process that is in use, in bytes; 0 if it has ended or can't be examined.
std::size_t resident_memory(std::int64_t process_id);

// The most that it ever was, likewise.
std::size_t peak_memory(std::int64_t process_id);

// How many files the process has open (on Windows: handles), and how many threads; 0 likewise.
std::size_t open_files(std::int64_t process_id);
std::size_t running_threads(std::int64_t process_id);

}  // namespace platform
