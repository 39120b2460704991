// Memory that somebody else names by address, and that may not be there.
#pragma once

#include <cstddef>

namespace platform {

// True if so many bytes can be read there now. Where the system doesn't tell, all are taken for
// readable.
bool is_readable(const void* memory, std::size_t size);

}  // namespace platform
