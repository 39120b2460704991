#include "messages/library/library_threads.h"

#include "platform/library_threads.h"

bool prepare_for_threads() { return platform::prepare_for_threads(); }
