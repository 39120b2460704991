// What the doctor says of every registration that doesn't work, and whether his advice helps.
#include <chrono>

#include "platform/file_rights.h"
#include "tests/end_to_end/machine.h"

namespace fs = std::filesystem;

// Where the doctor can help, its first advice does, and so does --fix: the second verdict is good.
TEST(setup, doctor_names_each_fault_and_its_advice_helps) {
  const struct {
    const char* expected;
    damage prepare;
    bool has_help = false;
    lines arguments = {};
  } cases[] = {
      {"manifest-good started 0", [](machine& m) { m.registered(); }},
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
  EXPECT_NE(m.run({"doctor"}).text.find(" --keep-ids --host PATH --force\n"), std::string::npos);
  const std::pair<const char*, const char*> hosts[] = {
      {"#!/bin/sh\nexec yes", "manifest-good host-hangs 1"},
      {"#!/bin/sh\nkill -SEGV $$", "manifest-good host-crashes 1"},
      {"#!/bin/sh\n", "manifest-good host-ends-early 1"},
      {"cat >/dev/null; sleep 5 2>&1 &", "manifest-good started 0"}};
  const auto begin = std::chrono::steady_clock::now();
  for (const auto& [script, expected] : hosts) {
    write_text(m.host(), std::string(script) + '\n');
    fs::permissions(m.host(), fs::perms::owner_all);
    EXPECT_EQ(m.doctor(), expected) << script;
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(9))
      << "the output outlives the host";
  fs::copy_file(HOST_PROGRAM, m.host(), fs::copy_options::overwrite_existing);
  EXPECT_EQ(m.doctor(), "manifest-good started 0") << "installed again, as the advice has it";
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
