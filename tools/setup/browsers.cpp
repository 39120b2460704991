#include "tools/setup/browsers.h"

namespace {

// Several of those made from Chromium read the system-wide folder or the registry key of Chrome or
// Chromium instead of one of their own.
constexpr browser browsers[] = {
    {"chrome",
     "Chrome",
     id_form::chromium,
     {"google-chrome/NativeMessagingHosts", "/etc/opt/chrome/native-messaging-hosts",
      R"(Software\Google\Chrome\NativeMessagingHosts)", "google-chrome", "google-chrome",
      "com.google.Chrome", "google-chrome"}},
    {"chromium",
     "Chromium",
     id_form::chromium,
     {"chromium/NativeMessagingHosts", "/etc/chromium/native-messaging-hosts",
      R"(Software\Chromium\NativeMessagingHosts)", "chromium", "chromium", "org.chromium.Chromium",
      "chromium"}},
    {"edge",
     "Edge",
     id_form::chromium,
     {"microsoft-edge/NativeMessagingHosts", "/etc/opt/edge/native-messaging-hosts",
      R"(Software\Microsoft\Edge\NativeMessagingHosts)", "microsoft-edge", "microsoft-edge",
      "com.microsoft.Edge", "microsoft-edge"}},
    {"brave",
     "Brave",
     id_form::chromium,
     {"BraveSoftware/Brave-Browser/NativeMessagingHosts", "/etc/opt/chrome/native-messaging-hosts",
      R"(Software\BraveSoftware\Brave-Browser\NativeMessagingHosts)", "BraveSoftware/Brave-Browser",
      "brave-browser", "com.brave.Browser", "brave"}},
    {"vivaldi",
     "Vivaldi",
     id_form::chromium,
     {"vivaldi/NativeMessagingHosts", "/etc/opt/vivaldi/native-messaging-hosts",
      R"(Software\Vivaldi\NativeMessagingHosts)", "vivaldi", "vivaldi", "com.vivaldi.Vivaldi",
      "vivaldi"}},
    {"opera",
     "Opera",
     id_form::chromium,
     {"opera/NativeMessagingHosts", "/etc/chromium/native-messaging-hosts",
      R"(Software\Google\Chrome\NativeMessagingHosts)", "opera", "opera", "com.opera.Opera",
      "opera"}},
    {"firefox",
     "Firefox",
     id_form::firefox,
     {"~/.mozilla/native-messaging-hosts", "/usr/lib/mozilla/native-messaging-hosts",
      R"(Software\Mozilla\NativeMessagingHosts)", "~/.mozilla/firefox", "firefox",
      "org.mozilla.firefox", "firefox"}},
};

}  // namespace

std::span<const browser> all_browsers() { return browsers; }

const browser* find_browser(std::string_view name) {
  for (const browser& candidate : browsers) {
    if (candidate.name == name) return &candidate;
  }
  return nullptr;
}
