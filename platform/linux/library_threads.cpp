#include "platform/library_threads.h"

namespace platform {

bool prepare_for_threads() { return true; }

bool threads_have_been_ended() { return false; }

}  // namespace platform
