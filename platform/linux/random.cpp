#include <cstdlib>

#include "platform/platform.h"

namespace platform {

int random_number() { return std::rand(); }  // NOLINT(cert-msc30-c,cert-msc50-cpp)

}  // namespace platform
