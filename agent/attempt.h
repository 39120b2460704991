// Keeps exceptions from the host. When the agent has no memory left, it drops what it was working
// on, and both go on.
#pragma once

#include <exception>

// The result of `work`, or false if it throws; whatever it owned has been released then.
template <class Work>
bool attempt(Work work) noexcept {
  try {
    return work();
  } catch (const std::exception&) {
    return false;
  }
}
