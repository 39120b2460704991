// What happens when the agent has no memory left: what it was working on is dropped, and both it
// and the host, which no exception may reach, live on.
#pragma once

#include <exception>

// True if `work` gives true. False also if it ends by an exception; what it owned has been given
// back then.
template <class Work>
bool attempt(Work work) noexcept {
  try {
    return work();
  } catch (const std::exception&) {
    return false;
  }
}
