// Registration with browsers.
#include "platform/file_rights.h"
#include "tests/end_to_end/machine.h"
#include "tools/setup/extension_id.h"

namespace fs = std::filesystem;

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
  EXPECT_EQ(findings(m.run({"install", "--browser", "vivaldi", "--browser", "firefox",
                            "--add-extension-id", id, "--json"})),
            "unchanged skipped 0");
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
