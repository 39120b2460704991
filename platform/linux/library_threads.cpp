#include "platform/library_threads.h"

namespace platform {

bool prepare_for_threads() { return true; }

}  // namespace platform
