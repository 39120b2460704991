// What the doctor says of browsers that policies or a sandbox keep from the host.
#include <tuple>

#include "tests/end_to_end/machine.h"

namespace fs = std::filesystem;

// What browsers make of each policy is asked of them in tests/browser.
TEST_F(setup_in_root, doctor_heeds_policies) {
  const std::string blocks = R"(// comment
{"NativeMessagingBlocklist":[1,"*"],})";
  const std::string forbids = R"({"NativeMessagingUserLevelHosts":false})";
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"policy-blocks-host 1", blocks, "{}"},
      {"manifest-good started 0", blocks, R"({"NativeMessagingAllowlist":["com.orvanta.coffer"]})"},
      {"manifest-good started 0", blocks, R"({"NativeMessagingBlocklist":[]})"},
      {"policy-forbids-user-hosts 1", "{}", forbids},
  };
  m.registered();
  for (const auto& [expected, first, second] : cases) {
    m.put("etc/opt/vivaldi/policies/managed/a", first);
    m.put("etc/opt/vivaldi/policies/managed/b.json", second);
    EXPECT_EQ(m.doctor(), expected) << first << second;
  }
  const outcome forbidden = m.run({"doctor"});
  EXPECT_NE(forbidden.text.find("policies/managed/b.json lets"), std::string::npos);
  EXPECT_EQ(m.follow(forbidden).exit_value, 0);
  EXPECT_EQ(m.doctor(), "manifest-good started 0");

  m.run({"install", "--browser", "firefox", "--extension-id", "a@b"});
  const std::string all =
      R"({"policies":{"ExtensionSettings":{"*":{"installation_mode":"blocked"})";
  for (const auto& [expected, text] : {std::pair{"policy-blocks-extension 1", all + "}}}"},
                                       {"manifest-good started 0", all + R"(,"a@b":{}}}})"}}) {
    m.put("etc/firefox/policies/policies.json", text);
    EXPECT_EQ(findings(m.run({"doctor", "--browser", "firefox", "--json"})), expected) << text;
  }
}

TEST_F(setup_in_root, browsers_in_a_sandbox_get_what_they_need) {
  m.registered();
  m.put("var/lib/flatpak/app/com.vivaldi.Vivaldi/x");
  m.put("usr/bin/vivaldi");
  EXPECT_EQ(m.doctor(), "sandboxed manifest-good started 0") << "there are two";
  fs::remove(m.root() / "usr/bin/vivaldi");
  const outcome flatpak = m.run({"doctor", "--extension-id", id});
  EXPECT_NE(flatpak.text.find("[sandboxed]"), std::string::npos) << flatpak.text;
  const outcome installed = m.follow(flatpak);
  EXPECT_NE(installed.text.find("flatpak override --user --talk-name=org.freedesktop.Flatpak"),
            std::string::npos)
      << installed.text;
  const fs::path script = m.home() / ".var/app/com.vivaldi.Vivaldi/cfhost";
  EXPECT_NE(read_text(script).find("flatpak-spawn --host '" + m.host().string() + "' \"$@\""),
            std::string::npos);
  EXPECT_EQ(m.doctor(), "permission-missing 1");
  m.put("~/.local/share/flatpak/overrides/com.vivaldi.Vivaldi",
        "[Session Bus Policy]\norg.freedesktop.Flatpak=talk\n");
  EXPECT_EQ(m.doctor(), "manifest-good started 0");
  EXPECT_EQ(m.run({"remove", "--flatpak"}).exit_value, 0);
  EXPECT_FALSE(fs::exists(script));

  m.run({"install", "--browser", "firefox", "--extension-id", "a@b"});
  const auto firefox = [this] {
    return findings(m.run({"doctor", "--browser", "firefox", "--json"}));
  };
  m.put("snap/firefox/x");
  EXPECT_EQ(firefox(), "sandbox-helper-missing 1");
  m.put("usr/libexec/xdg-desktop-portal", "org.freedesktop.portal.WebExtensions");
  EXPECT_EQ(firefox(), "sandbox-helper manifest-good started 0");
  m.put("~/snap/firefox/common/.mozilla/firefox/x/prefs.js",
        "user_pref(\"widget.use-xdg-desktop-portal.native-messaging\", 0);");
  EXPECT_EQ(firefox(), "sandbox-helper-off 1");
  fs::remove_all(m.root() / "snap");
  fs::remove_all(m.root() / "usr/libexec");
  m.put("var/lib/flatpak/app/org.mozilla.firefox/x");
  EXPECT_EQ(firefox(), "sandboxed 1");
  m.put("usr/share/dbus-1/services/org.freedesktop.NativeMessagingProxy.service");
  EXPECT_EQ(firefox(), "sandbox-helper manifest-good started 0");
  m.run({"remove", "--browser", "firefox"});
}

TEST(setup, doctor_heeds_policies_of_the_registry) {
  if (!registration_options({}).empty()) GTEST_SKIP() << "there is no registry";
  machine m;
  m.registered();
  const std::string key = R"(HKCU\Software\Policies\Vivaldi)";
  const std::pair<const char*, lines> steps[] = {
      {"policy-blocks-host 1", {"add", key + R"(\NativeMessagingBlocklist)", "/v", "1", "/d", "*"}},
      {"manifest-good started 0",
       {"add", key + R"(\NativeMessagingAllowlist)", "/v", "1", "/d", "com.orvanta.coffer"}},
      {"policy-forbids-user-hosts 1",
       {"add", key, "/v", "NativeMessagingUserLevelHosts", "/t", "REG_DWORD", "/d", "0"}},
      {"manifest-good started 0", {"delete", key}}};
  for (auto [expected, arguments] : steps) {
    arguments.emplace_back("/f");
    EXPECT_EQ(run_program(R"(C:\windows\system32\reg.exe)", arguments).exit_value, 0);
    EXPECT_EQ(m.doctor(), expected);
  }
}
