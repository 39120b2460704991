// Registration with browsers, and what the doctor says about every registration that doesn't work.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <sstream>

#include "platform/file_rights.h"
#include "tests/end_to_end/system_fixture.h"
#include "tests/end_to_end/tested_host.h"
#include "tools/method_advice.h"
#include "tools/printable.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/lenient_json.h"
#include "tools/setup/manifest.h"

namespace fs = std::filesystem;

namespace {

const std::string id(32, 'a');
const std::string other_id(32, 'p');

std::string read_text(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

void write_text(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from << " in " << text;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::string replaced_if(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// The ids that the doctor reports, in its order, and its exit value.
std::string findings(const outcome& examined) {
  std::string found;
  const std::string start = R"("id":")";
  for (std::size_t at = 0; (at = examined.text.find(start, at)) != std::string::npos;) {
    at += start.size();
    found += examined.text.substr(at, examined.text.find('"', at) - at) + ' ';
  }
  return found + std::to_string(examined.exit_value);
}

// A folder that serves as a whole system, where a system allows that, with a host that can be
// registered and the program that registers it.
class machine {
 public:
  machine() {
    fs::create_directories(host().parent_path());
    fs::copy_file(HOST_PROGRAM, host());
    fs::copy_file(SETUP_PROGRAM, setup());
    fs::copy_file(TAP_PROGRAM, setup().parent_path() / fs::path(TAP_PROGRAM).filename());
    put_library(PROBE_LIBRARY);
  }
  ~machine() {
    std::error_code ignored;
    if (registration_options(root()).empty()) {
      // Anything outside the folder would be found by the next test.
      if (fs::is_directory(manifest_, ignored)) fs::remove(manifest_, ignored);
      run({"remove", "--force"});
      run({"remove", "--system", "--force"});
    }
    fs::remove_all(folder_, ignored);
  }

  fs::path root() const { return folder_ / "root"; }
  fs::path home() const { return root() / fs::path(std::getenv("HOME")).relative_path(); }
  fs::path host() const { return folder_ / "host" / HOST_NAME; }
  fs::path recording() const { return folder_ / "recording"; }
  fs::path setup() const { return folder_ / "host" / fs::path(SETUP_PROGRAM).filename(); }
  fs::path library() const { return host().parent_path() / LIBRARY_NAME; }
  void put_library(const std::string& path) {
    fs::copy_file(path, library(), fs::copy_options::overwrite_existing);
  }
  void script(const std::string& text) { write_text(host().parent_path() / "script", text); }
  void put(const std::string& path, const std::string& text = {}) const {
    const fs::path file = path.starts_with("~/") ? home() / path.substr(2) : root() / path;
    fs::create_directories(file.parent_path());
    write_text(file, text);
  }

  outcome run(lines arguments) const {
    const bool for_browser = arguments.size() < 2 || arguments[1] != "--browser";
    if (for_browser) arguments.insert(arguments.end(), {"--browser", "vivaldi"});
    const lines where = registration_options(root());
    arguments.insert(arguments.end(), where.begin(), where.end());
    return run_as_given(arguments);
  }

  outcome run_as_given(const lines& arguments) const {
    return run_program(setup().string(), arguments);
  }

  // Runs the first command that the advice names, preferring the advice on a fault.
  outcome follow(const outcome& advised) const {
    const std::string start = "un: cfsetup ";
    const std::size_t fault = advised.text.find(": fault: ");
    const std::size_t at = advised.text.find(start, fault == std::string::npos ? 0 : fault);
    if (at == std::string::npos) return {-1, "no advice in " + advised.text};
    std::istringstream words(advised.text.substr(at + start.size()));
    std::string line;
    std::getline(words, line);
    lines arguments;
    words.str(replaced_if(line, " ID", " " + id));
    words.clear();
    for (std::string word; words >> word;) arguments.push_back(word);
    return run_as_given(arguments);
  }

  outcome install(const lines& more = {}) const {
    lines arguments = {"install", "--extension-id=" + id};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }

  std::string doctor(const lines& more = {}) const {
    lines arguments = {"doctor"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.emplace_back("--json");
    return findings(run(arguments));
  }

  // Registers the host, and returns the manifest's path as it was reported.
  const fs::path& registered(const lines& more = {}) {
    const std::string text = install(more).text;
    const std::string start = "Vivaldi: wrote ";
    EXPECT_TRUE(text.starts_with(start)) << text;
    const std::size_t end =
        std::min({text.find('\n'), text.find(" and the registry key "), text.find(", which ")});
    manifest_ = text.substr(start.size(), end - start.size());
    return manifest_;
  }

 private:
  fs::path folder_ = make_folder();
  fs::path manifest_;
};

using damage = std::function<void(machine&)>;

damage changed(const std::string& from, const std::string& to) {
  return [from, to](machine& m) {
    const fs::path& file = m.registered();
    write_text(file, replaced(read_text(file), from, to));
  };
}

}  // namespace

// Where the doctor can help, its first advice does, and so does --fix: the second verdict is good.
TEST(setup, doctor_names_each_fault_and_its_advice_helps) {
  const struct {
    const char* expected;
    damage prepare;
    bool has_help = false;
    lines arguments = {};
  } cases[] = {
      {"manifest-good started 0", [](machine& m) { m.registered(); }},
      {"manifest-good started 0",
       [](machine& m) { m.registered(); },
       false,
       {"--extension-id", id}},
      {"manifest-missing 1", [](machine&) {}, true, {"--extension-id", id}},
      {"manifest-missing 1", [](machine&) {}},
      {"manifest-unreadable 1",
       [](machine& m) {
         const fs::path& file = m.registered();
         fs::remove(file);
         fs::create_directory(file);
       }},
      {"manifest-unreadable 1",
       [](machine& m) { write_text(m.registered(), std::string((16 << 20) + 1, ' ')); },
       true,
       {"--extension-id", id}},
      {"manifest-not-json 1", changed(",", " "), true, {"--extension-id", id}},
      {"name-wrong 1", changed("com.orvanta.coffer", "com.orvanta.coffers"), true},
      {"description-missing type-wrong 1", changed("stdio\"", "stdin\",\"description\":\"\""),
       true},
      {"path-relative 1",
       [](machine& m) {
         const fs::path& file = m.registered();
         const std::string text = read_text(file);
         const std::size_t at = text.find("\"path\":\"") + 8;
         write_text(file, text.substr(0, at) + text.substr(text.find('"', at)));
       },
       true},
      {"origin-absent 1",
       changed("\"chrome-extension://" + id + "/\"", ""),
       true,
       {"--extension-id", id}},
      {"origin-absent 1", [](machine& m) { m.registered(); }, true, {"--extension-id", other_id}},
      {"origin-malformed 1", changed(id + "/\"", id + "/\",\"" + id + '"'), true},
      {"origin-useless manifest-good started 0", changed("[", "[\"chrome-extension://abc/\",")},
      {"manifest-good host-missing 1",
       [](machine& m) {
         m.registered({"--force", "--host", (m.root() / "gone").string()});
       },
       true},
      {"manifest-good host-not-executable 1",
       [](machine& m) {
         write_text(m.host().parent_path() / "text", "#!");
         m.registered({"--force", "--host", (m.host().parent_path() / "text").string()});
       },
       true},
      {"manifest-good library-missing 1",
       [](machine& m) { m.registered(), fs::remove(m.library()); }},
      {"manifest-good not-a-library 1",
       [](machine& m) { m.registered(), write_text(m.library(), "no library"); }},
      {"manifest-good interface-missing 1",
       [](machine& m) { m.registered(), m.script("no-interface\n"); }},
      {"manifest-good host-fails 1",
       [](machine& m) { m.registered(), m.script("unload leave 7\n"); }},
      {"manifest-good host-hangs 1",
       [](machine& m) { m.registered(), m.script("load sleep 15000\n"); }},
      {"system-manifest-hidden manifest-good started 0",
       [](machine& m) {
         m.registered({"--system"});
         m.registered({"--extension-id", other_id});
       }},
      {"manifest-good started 0", [](machine& m) { m.registered({"--system"}), m.registered(); }},
  };
  for (const auto& c : cases) {
    lines arguments = {"doctor", "--fix"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    {
      machine m;
      c.prepare(m);
      EXPECT_EQ(m.doctor(c.arguments), c.expected);
      if (!c.has_help) continue;
      arguments.emplace_back("--dry-run");
      const outcome examined = m.run(arguments);
      EXPECT_EQ(m.follow(examined).exit_value, 0) << examined.text;
      EXPECT_EQ(m.doctor(c.arguments), "manifest-good started 0") << examined.text;
    }
    machine m;
    c.prepare(m);
    arguments.back() = "--json";
    const std::string fixed = findings(m.run(arguments));
    EXPECT_TRUE(fixed.ends_with(" manifest-good started 0")) << c.expected << ": " << fixed;
  }
}

TEST(setup, gives_a_terminal_no_commands_of_a_manifest) {
  machine m;
  changed("\"path\":\"", "\"path\":\"\\u001b[2J")(m);
  const std::string text = m.run({"doctor"}).text;
  EXPECT_EQ(text.find('\x1b'), std::string::npos) << text;
  EXPECT_NE(text.find("\\u001b[2J"), std::string::npos) << text;
}

TEST(setup, repeats_itself_without_a_change_and_overwrites_no_other_host) {
  machine m;
  EXPECT_TRUE(m.install({"--dry-run"}).text.starts_with("Vivaldi: would write "));
  const fs::path& file = m.registered();
  const std::string text = read_text(file);
  EXPECT_NE(text.find("\"chrome-extension://" + id + "/\""), std::string::npos) << text;
  EXPECT_TRUE(m.install().text.starts_with("Vivaldi: unchanged: "));

  const std::string library = m.library().string();
  const outcome refused = m.run({"install", "--extension-id", id, "--force", "--host", library});
  EXPECT_EQ(refused.exit_value, 0);
  const outcome other = m.install();
  EXPECT_EQ(other.exit_value, 1);
  EXPECT_NE(other.text.find(library + " [other-host]\n    If"), std::string::npos) << other.text;
  EXPECT_EQ(m.install({"--force"}).exit_value, 0);
  EXPECT_EQ(read_text(file), text);
  const auto files = std::distance(fs::directory_iterator(file.parent_path()), {});
  EXPECT_EQ(files, 1) << "a temporary file is left";

  EXPECT_TRUE(m.run({"remove", "--dry-run"}).text.starts_with("Vivaldi: would remove "));
  EXPECT_TRUE(m.run({"remove"}).text.starts_with("Vivaldi: removed "));
  EXPECT_FALSE(fs::exists(file));
  EXPECT_TRUE(m.run({"remove"}).text.starts_with("Vivaldi: nothing to remove "));
}

TEST(setup, puts_a_recorder_before_a_host_and_takes_it_away_again) {
  machine m;
  m.registered();
  const lines record = {"--record", m.recording().string(), "--with-values"};
  EXPECT_EQ(m.install({"--dry-run", "--record", m.recording().string()}).exit_value, 0);
  EXPECT_FALSE(fs::exists(m.recording()));
  const std::string text = read_text(m.registered(record));
  EXPECT_NE(text.find(fs::path(TAP_PROGRAM).filename().string()), std::string::npos) << text;
  EXPECT_NE(read_text(m.recording() / "cftap.json").find("\"with_values\":true"),
            std::string::npos);
  EXPECT_EQ(m.doctor(), "manifest-good started 0");
  const auto files = std::distance(fs::directory_iterator(m.recording()), {});
  EXPECT_EQ(files, 3) << "the doctor's session isn't recorded";
  EXPECT_EQ(m.install().text.substr(0, 15), "Vivaldi: wrote ");
  m.registered(record);
  EXPECT_TRUE(m.run({"remove"}).text.starts_with("Vivaldi: removed "));
}

TEST(setup, each_browser_gets_the_ids_of_its_form) {
  machine m;
  const lines both = {"install", "--browser", "vivaldi", "--extension-id", id, "--json"};
  EXPECT_EQ(findings(m.run(both)), "written 0");
  lines firefox = both;
  firefox[2] = "firefox";
  EXPECT_EQ(findings(m.run(firefox)), "no-id 1");
  std::string error;
  for (const char* const good :
       {"coffer@orvanta.example", "@x", "{01234567-89ab-CDEF-0123-456789abcdef}"}) {
    EXPECT_EQ(form_of_id(good, error), id_form::firefox) << good;
  }
  for (const char* const bad : {"", "a@", "a b@c", "{01234567-89ab-CDEF-0123-456789abcdeg}"}) {
    EXPECT_EQ(form_of_id(bad, error), std::nullopt) << bad;
  }
}

TEST(setup, keeps_ids_and_leaves_other_hosts_alone) {
  machine m;
  EXPECT_TRUE(m.run({"remove"}).text.starts_with("Vivaldi: nothing to remove "));
  m.registered();
  m.install({"--extension-id", other_id});
  EXPECT_NE(m.run({"list"}).text.find(" lets in " + id + " and " + other_id), std::string::npos);
  m.run({"install", "--extension-id", other_id});
  m.run({"install", "--add-extension-id", id});
  EXPECT_TRUE(m.run({"install", "--keep-ids"}).text.starts_with("Vivaldi: unchanged: "));
  const outcome good = m.run({"doctor"});
  EXPECT_NE(good.text.find(" lets in " + other_id + " and " + id + "\n"), std::string::npos);
  EXPECT_EQ(m.follow(good).exit_value, 0) << good.text;

  m.install({"--force", "--host", m.library().string()});
  const outcome left = m.run({"remove"});
  EXPECT_EQ(left.exit_value, 1);
  EXPECT_NE(left.text.find(" names another host: " + m.library().string()), std::string::npos);
  EXPECT_TRUE(m.run({"remove", "--force"}).text.starts_with("Vivaldi: removed "));
}

TEST(setup, takes_no_key_from_another_browser_without_a_word) {
  if (!registration_options({}).empty()) GTEST_SKIP() << "there is no registry";
  machine m;
  m.run({"install", "--browser", "opera", "--extension-id", id});
  const outcome left = m.run({"remove", "--browser", "opera"});
  EXPECT_NE(left.text.find("which is also that of Chrome, "), std::string::npos) << left.text;
  EXPECT_EQ(m.follow(left).exit_value, 0);
}

TEST(setup, names_the_method_that_is_meant) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"method":"get-setings"})", "is \"get-settings\" meant?"},
      {R"({"method":"Drop-Down","data":{}})", "is \"drop-down\" meant?"},
      {R"({"method":"x"})", "known are get-info-for-page, "},
      {R"({"data":1})", "asks for no method"}};
  for (const auto& [request, advice] : cases) {
    EXPECT_NE(method_advice(request).find(advice), std::string::npos) << method_advice(request);
  }
  for (const char* const good : {R"({"method":"get-settings"})", R"({"method":)", ""}) {
    EXPECT_EQ(method_advice(good), "") << good;
  }
}

// These tests put files into a system of their own.
class setup_in_root : public testing::Test {
 protected:
  void SetUp() override {
    if (registration_options({}).empty()) GTEST_SKIP() << "registrations have no root here";
  }
  machine m;
};

TEST_F(setup_in_root, doctor_sees_browsers_and_writers) {
  const lines all = {"doctor", "--json", "--root", m.root().string()};
  EXPECT_EQ(findings(m.run_as_given(all)), "no-browser 1");
  EXPECT_EQ(findings(m.run_as_given({"remove", "--json", "--root", m.root().string()})),
            "no-browser 0");
  const fs::path& file = m.registered();
  constexpr auto public_file = fs::perms::owner_read | fs::perms::owner_write |
                               fs::perms::group_read | fs::perms::others_read;
  EXPECT_EQ(fs::status(file).permissions(), public_file);
  EXPECT_EQ(findings(m.run_as_given(all)), "manifest-good started 0");
  EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);

  const std::string start = platform::is_superuser() ? "not-started" : "started";
  for (const fs::path& open : {m.library(), m.host(), m.host().parent_path(),
                               m.host().parent_path().parent_path(), file, m.root()}) {
    const fs::perms before = fs::status(open).permissions();
    fs::permissions(open, fs::perms::group_write, fs::perm_options::add);
    EXPECT_EQ(m.doctor(), "manifest-good writable-by-others " + start + " 0") << open;
    EXPECT_EQ(m.doctor({"--fix"}), "fixing manifest-good started 0") << open;
    EXPECT_EQ(fs::status(open).permissions(), before);
  }

  const fs::path link = m.root() / "link";
  fs::create_symlink(m.host(), link);
  m.install({"--force", "--host", link.string()});
  EXPECT_EQ(m.doctor(), "manifest-good started 0") << "a link to the host";

  fs::remove(m.host());
  const std::pair<const char*, const char*> hosts[] = {
      {"exec yes", "manifest-good host-hangs 1"},
      {"kill -SEGV $$", "manifest-good host-crashes 1"},
      {"sleep 5 2>&1 &", "manifest-good started 0"}};
  const auto begin = std::chrono::steady_clock::now();
  for (const auto& [script, expected] : hosts) {
    write_text(m.host(), std::string("#!/bin/sh\n") + script + '\n');
    fs::permissions(m.host(), fs::perms::owner_all);
    EXPECT_EQ(m.doctor(), expected);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(9))
      << "the output outlives the host";
}

TEST_F(setup_in_root, advice_replaces_a_link_that_leads_nowhere_and_a_program_that_is_no_host) {
  const fs::path file = m.registered();
  fs::remove(file);
  fs::create_symlink(m.root() / "nowhere", file);
  const outcome dangling = m.run({"doctor"});
  EXPECT_NE(dangling.text.find("[manifest-unreadable]"), std::string::npos) << dangling.text;
  EXPECT_EQ(m.follow(dangling).exit_value, 0) << dangling.text;
  EXPECT_EQ(m.doctor(), "manifest-good started 0");

  m.install({"--force", "--host", "/bin/false"});
  fs::copy_file("/bin/false", m.root() / "false");
  m.install({"--force", "--host", (m.root() / "false").string()});
  m.put("cfagent.so");
  EXPECT_EQ(m.doctor(), "manifest-good not-a-library 1");
}

TEST_F(setup_in_root, root_writes_nothing_where_a_user_leads_it) {
  if (!platform::is_superuser()) GTEST_SKIP() << "only root can do such harm";
  const fs::path settings = m.home() / ".config", elsewhere = m.root() / "elsewhere";
  fs::create_directories(settings.parent_path());
  fs::create_directories(elsewhere);
  fs::create_directory_symlink(elsewhere, settings);
  run_program("/bin/chown", {"-h", "12345", settings.string()});
  for (const lines& arguments : {lines{"install", "--extension-id", id}, lines{"remove"}}) {
    const outcome refused = m.run(arguments);
    EXPECT_NE(refused.text.find(settings.string() + " is in the hands of other users"),
              std::string::npos)
        << refused.text;
  }
  EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(setup_in_root, doctor_heeds_policies) {
  const std::string name = "com.orvanta.coffer";
  const auto policy = [](const std::string& of, const std::string& value) {
    return "{\"NativeMessaging" + of + "\":" + value + ",}";
  };
  const std::string blocks = policy("Blocklist", "[\"" + name + "\"]");
  const std::string star = policy("Blocklist", "[1,\"*\"]");
  const std::string allows = policy("Allowlist", "[\"" + name + "\"]");
  const struct {
    const char* expected;
    std::string first, second;
  } cases[] = {
      {"policy-blocks-host manifest-good started 1", blocks, "{}"},
      {"policy-blocks-host manifest-good started 1", "// comment\n" + star, "{}"},
      {"manifest-good started 0", star, allows},
      {"policy-blocks-host manifest-good started 1", star, policy("Allowlist", "[\"*\"]")},
      {"manifest-good started 0", blocks, policy("Blocklist", "[\"com.other\"]")},
      {"policy-blocks-host manifest-good started 1", policy("Blocklist", "[]"), blocks},
      {"manifest-good started 0", "{" + blocks, policy("Blocklist", "\"*\"")},
      {"policy-forbids-user-hosts 1", policy("UserLevelHosts", "false"), "{}"},
      {"manifest-good started 0", policy("UserLevelHosts", "0"), "{}"},
  };
  m.registered();
  for (const auto& c : cases) {
    m.put("etc/opt/vivaldi/policies/managed/a", c.first);
    m.put("etc/opt/vivaldi/policies/managed/b.json", c.second);
    // A host that may not be started isn't started.
    const std::string expected = replaced_if(c.expected, "manifest-good started 1", "1");
    EXPECT_EQ(m.doctor(), expected) << c.first;
  }
  m.put("etc/opt/vivaldi/policies/managed/b.json", policy("UserLevelHosts", "false"));
  const outcome forbidden = m.run({"doctor"});
  EXPECT_NE(forbidden.text.find("policies/managed/b.json lets"), std::string::npos);
  EXPECT_EQ(m.follow(forbidden).exit_value, 0);
  EXPECT_EQ(m.doctor(), "manifest-good started 0");
  m.run({"remove", "--system"});

  const std::string firefox_id = "coffer@orvanta.example";
  m.run({"install", "--browser", "firefox", "--extension-id", firefox_id});
  const auto settings = [](const std::string& of) {
    return R"({"policies":{"ExtensionSettings":{)" + of + "}}}";
  };
  const std::string all = R"("*":{"installation_mode":"blocked"})";
  for (const auto& [expected, text] :
       {std::pair{"policy-blocks-extension 1", settings(all)},
        {"manifest-good started 0", settings(all + ",\"" + firefox_id + "\":{}")}}) {
    m.put("etc/firefox/policies/policies.json", text);
    EXPECT_EQ(findings(m.run({"doctor", "--browser", "firefox", "--json"})), expected) << text;
  }
  m.run({"remove", "--browser", "firefox"});
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

TEST_F(setup_in_root, takes_from_no_other_browser_without_a_word) {
  m.run({"install", "--browser", "brave", "--system", "--extension-id", id});
  m.put("usr/bin/google-chrome");
  const outcome left = m.run({"remove", "--browser", "brave", "--system"});
  EXPECT_NE(left.text.find("which is also that of Chrome [shared-place]"), std::string::npos)
      << left.text;
  EXPECT_EQ(m.follow(left).exit_value, 0);
  EXPECT_EQ(findings(m.run({"doctor", "--browser", "chrome", "--json"})), "manifest-missing 1");
  m.run({"install", "--browser", "brave", "--system", "--extension-id", id});
  fs::remove(m.root() / "usr/bin/google-chrome");
  const outcome removed = m.run({"remove", "--browser", "brave", "--system"});
  EXPECT_NE(removed.text.find(", which was also that of Chrome, "), std::string::npos);

  const lines folder = {"--manifest-dir", (m.root() / "own").string(), "--form", "chromium"};
  for (const auto& [command, text] : {std::pair{"install", "wrote "},
                                      {"doctor", "/own/com.orvanta.coffer.json is as it should"},
                                      {"list", "registered for this user"},
                                      {"remove", "removed "}}) {
    lines arguments = {command};
    arguments.insert(arguments.end(), folder.begin(), folder.end());
    if (command == std::string("install"))
      arguments.insert(arguments.end(), {"--extension-id", id});
    EXPECT_NE(m.run_as_given(arguments).text.find(text), std::string::npos) << command;
  }
}

TEST_F(setup_in_root, reports_in_json_that_is_utf8_whatever_a_path_holds) {
  const std::string text =
      m.run({"install", "--keep-ids", "--force", "--json", "--host", m.host().string() + '\xFF'})
          .text;
  EXPECT_NE(text.find("\xEF\xBF\xBD"), std::string::npos) << text;
}

// All hosts of a build share the configuration and the channel.
TEST(diagnostics, viewer_says_when_nothing_will_come) {
  if (registration_options({}).empty()) GTEST_SKIP() << "there is no shell";
  open_debug_channel();
  const std::pair<const char*, const char*> cases[] = {
      {"", "has no \"dump\""}, {"Dump = true", "the value \"true\""}, {"dump=1", nullptr}};
  for (const auto& [line, text] : cases) {
    write_configuration(std::string("[coffer]\n") + line + '\n');
    const std::string said =
        run_program("/bin/sh", {"-c", "timeout -s INT 1 " DEBUG_PROGRAM " 2>&1"}).text;
    if (text == nullptr) {
      EXPECT_EQ(said, "") << line;
    } else {
      EXPECT_NE(said.find(text), std::string::npos) << said;
    }
  }
  write_configuration("");
}

TEST(terminal, is_shown_text_and_no_commands) {
  EXPECT_EQ(
      printable_line(
          "a\tb\x1B\x7F \x9B"
          "c \xC2\x9B \xC3\xA9 \xE2\x80\xAE \xE2\x82\xAC \xED\xA0\x9B \xF4\x90\x80\x80 \xE2\x80"),
      "a b\\u001b\\u007f \\u009bc \\u009b \xC3\xA9 \\u202e \xE2\x82\xAC "
      "\\u00ed\\u00a0\\u009b \\u00f4\\u0090\\u0080\\u0080 \\u00e2\\u0080");
}
