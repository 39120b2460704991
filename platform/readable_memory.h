// Checks memory whose address comes from somebody else, and which may not be there.
#pragma once

#include <cstddef>

namespace platform {

// True if `size` bytes at `memory` can be read now. Always true where the system doesn't tell.
bool is_readable(const void* memory, std::size_t size);

}  // namespace platform
