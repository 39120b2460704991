// The names of the methods that requests may ask for, also for programs that implement none.
#pragma once

#include <string_view>

inline constexpr std::string_view method_names[] = {
    "get-info-for-page", "save-info-from-page", "open-coffer",
    "open-settings",     "configure-coffer",    "get-settings",
    "lock-coffer",       "unlock-coffer",       "drop-down",
};
