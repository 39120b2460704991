// Registration with browsers, and what the doctor says of every registration that doesn't work.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <sstream>

#include "tests/end_to_end/host_session.h"
#include "tests/end_to_end/system_fixture.h"
#include "tools/setup/extension_id.h"
#include "tools/setup/manifest.h"
#include "tools/setup/strict_json.h"

namespace fs = std::filesystem;

namespace {

const std::string id(32, 'a');
const std::string other_id(32, 'p');

struct outcome {
  int exit_value = -1;
  std::string text;
};

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

// A folder for a system of its own, where systems have folders, with a host that can be registered.
class machine {
 public:
  machine() {
    fs::create_directories(host().parent_path());
    fs::copy_file(HOST_PROGRAM, host());
    put_library(PROBE_LIBRARY);
  }
  ~machine() {
    // What isn't in the folder would be found by the next test.
    std::error_code ignored;
    if (fs::is_directory(manifest_, ignored)) fs::remove(manifest_, ignored);
    run({"remove"});
    run({"remove", "--system"});
    fs::remove_all(folder_, ignored);
  }

  fs::path root() const { return folder_ / "root"; }
  fs::path host() const { return folder_ / "host" / HOST_NAME; }
  fs::path library() const { return host().parent_path() / LIBRARY_NAME; }
  void put_library(const std::string& path) {
    fs::copy_file(path, library(), fs::copy_options::overwrite_existing);
  }
  void script(const std::string& text) { write_text(host().parent_path() / "script", text); }

  outcome run(lines arguments) const {
    const bool for_browser = arguments.size() < 2 || arguments[1] != "--browser";
    if (for_browser) arguments.insert(arguments.end(), {"--browser", "vivaldi"});
    const lines where = registration_options(root());
    arguments.insert(arguments.end(), where.begin(), where.end());
    return run_as_given(arguments);
  }

  static outcome run_as_given(const lines& arguments) {
    outcome result;
    std::string error;
    const auto setup = platform::child_process::start(SETUP_PROGRAM, arguments, error);
    if (setup == nullptr) return {-1, error};
    setup->close_input();
    char block[4096];
    while (const std::size_t count = setup->read(block, sizeof block, setup->forever).value_or(0)) {
      result.text.append(block, count);
    }
    // Some systems have two characters for the end of a line.
    std::erase(result.text, '\r');
    result.exit_value = setup->wait(setup->forever).value_or(-1);
    return result;
  }

  outcome install(const lines& more = {}) const {
    lines arguments = {"install", "--extension-id", id, "--host", host().string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }

  // Registers the host, and gives the manifest's path as it was reported.
  const fs::path& registered(const lines& more = {}) {
    const std::string text = install(more).text;
    const std::string start = "Vivaldi: wrote ";
    EXPECT_TRUE(text.starts_with(start)) << text;
    const std::size_t end = std::min(text.find('\n'), text.find(" and the registry key "));
    manifest_ = text.substr(start.size(), end - start.size());
    return manifest_;
  }

 private:
  fs::path folder_ = make_folder();
  fs::path manifest_;
};

// The ids of what the doctor reports, in its order.
std::string findings(const outcome& examined) {
  std::string found;
  const std::string start = R"("id":")";
  for (std::size_t at = 0; (at = examined.text.find(start, at)) != std::string::npos;) {
    at += start.size();
    found += examined.text.substr(at, examined.text.find('"', at) - at) + ' ';
  }
  return found + std::to_string(examined.exit_value);
}

using damage = std::function<void(machine&)>;

damage changed(const std::string& from, const std::string& to) {
  return [from, to](machine& m) {
    const fs::path& file = m.registered();
    write_text(file, replaced(read_text(file), from, to));
  };
}

}  // namespace

TEST(setup, doctor_names_each_fault) {
  const struct {
    const char* expected;
    damage prepare;
    lines arguments;
  } cases[] = {
      {"manifest-good started 0", [](machine& m) { m.registered(); }, {}},
      {"manifest-good started 0", [](machine& m) { m.registered(); }, {"--extension-id", id}},
      {"manifest-missing 1", [](machine&) {}, {}},
      {"manifest-unreadable 1",
       [](machine& m) {
         const fs::path& file = m.registered();
         fs::remove(file);
         fs::create_directory(file);
       },
       {}},
      {"manifest-unreadable 1",
       [](machine& m) { write_text(m.registered(), std::string((1 << 20) + 1, ' ')); },
       {}},
      {"manifest-not-json 1", changed(",", " "), {}},
      {"manifest-not-json 1", [](machine& m) { write_text(m.registered(), "[]"); }, {}},
      {"name-wrong started 1", changed("com.orvanta.coffer", "com.orvanta.coffers"), {}},
      {"type-wrong started 1", changed("stdio", "stdin"), {}},
      {"path-relative 1",
       [](machine& m) {
         const fs::path& file = m.registered();
         const std::string text = read_text(file);
         const std::size_t at = text.find("\"path\":\"") + 8;
         write_text(file, text.substr(0, at) + "cfhost" + text.substr(text.find('"', at)));
       },
       {}},
      {"origin-absent started 1", changed("\"chrome-extension://" + id + "/\"", ""), {}},
      {"origin-absent started 1", [](machine& m) { m.registered(); }, {"--extension-id", other_id}},
      {"origin-malformed started 1", changed(id + '/', id), {}},
      {"manifest-good host-missing 1",
       [](machine& m) { m.registered(), fs::remove(m.host()); },
       {}},
      {"manifest-good host-not-executable 1",
       [](machine& m) {
         m.registered();
         fs::remove(m.host());
         write_text(m.host(), "#!");
       },
       {}},
      {"manifest-good library-missing 1",
       [](machine& m) { m.registered(), fs::remove(m.library()); },
       {}},
      {"manifest-good library-unloadable 1",
       [](machine& m) { m.registered(), write_text(m.library(), "no library"); },
       {}},
      {"manifest-good library-refuses 1",
       [](machine& m) { m.registered(), m.script("no-interface\n"); },
       {}},
      {"manifest-good host-fails 1",
       [](machine& m) { m.registered(), m.script("unload leave 7\n"); },
       {}},
      {"manifest-good host-hangs 1",
       [](machine& m) { m.registered(), m.script("load sleep 15000\n"); },
       {}},
      {"system-manifest-hidden manifest-good started 0",
       [](machine& m) {
         m.registered({"--system"});
         m.registered({"--extension-id", other_id});
       },
       {}},
      {"manifest-good started 0",
       [](machine& m) { m.registered({"--system"}), m.registered(); },
       {}},
  };
  for (const auto& c : cases) {
    machine m;
    c.prepare(m);
    lines arguments = {"doctor", "--json"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    const outcome examined = m.run(arguments);
    EXPECT_EQ(findings(examined), c.expected) << examined.text;
  }
}

TEST(setup, gives_a_terminal_no_commands_of_a_manifest) {
  machine m;
  changed("\"path\":\"", "\"path\":\"\\u001b[2J")(m);
  const std::string text = m.run({"doctor"}).text;
  EXPECT_EQ(text.find('\x1b'), std::string::npos) << text;
  EXPECT_NE(text.find("\\u001b[2J"), std::string::npos) << text;
}

TEST(setup, reports_in_json_that_is_utf8_whatever_a_manifest_holds) {
  machine m;
  changed("stdio", "std\xFF.io")(m);
  const std::string text = m.run({"doctor", "--json"}).text;
  EXPECT_NE(text.find("std\xEF\xBF\xBD.io"), std::string::npos) << text;
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

TEST(setup, refuses_arguments_that_it_cannot_use) {
  const lines cases[] = {{},
                         {"instal"},
                         {"install"},
                         {"install", "--extension-id"},
                         {"install", "--extension-id", "abc"},
                         {"install", "--extension-id", std::string(32, 'q')},
                         {"install", "--extension-id", id, "--browser", "netscape"},
                         {"install", "--extension-id", id, "--host", "cfhost"},
                         {"install", id},
                         {"list", "--system", "--user-data-dir", HOST_PROGRAM}};
  for (const lines& arguments : cases) {
    EXPECT_EQ(machine::run_as_given(arguments).exit_value, 2)
        << (arguments.empty() ? "" : arguments.back());
  }
}

TEST(setup, each_browser_gets_the_ids_of_its_form) {
  machine m;
  const lines both = {"install", "--browser", "vivaldi",         "--extension-id",
                      id,        "--host",    m.host().string(), "--json"};
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

TEST(setup, takes_for_json_what_browsers_take) {
  for (const char* const good :
       {"{}", " [1, -0.5e+7,\n\"\\u00e9\\n\" ]\t", "null", R"({"a":{"b":[]},"c":true})"}) {
    EXPECT_EQ(find_json_fault(good), std::nullopt) << good;
  }
  const std::pair<std::string, std::size_t> faults[] = {
      {"", 0},        {"{,}", 1},  {"{\"a\" 1}", 5},   {"[1,]", 3},   {"[1 2]", 3},
      {"[01]", 2},    {"[1.]", 3}, {"\"\\x\"", 2},     {"\"\n\"", 1}, {"{} x", 3},
      {"'a'", 0},     {"[-]", 2},  {"\"\\u12g4\"", 5}, {"[tru]", 4},  {"{1:2}", 1},
      {"// c\n{}", 0}};
  for (const auto& [text, at] : faults) EXPECT_EQ(find_json_fault(text), at) << text;
  EXPECT_NE(find_json_fault(std::string(100'000, '[')), std::nullopt);
}

TEST(setup, where_systems_have_roots_doctor_sees_browsers_and_writers_in_them) {
  machine m;
  if (registration_options(m.root()).empty()) GTEST_SKIP() << "registrations have no root here";
  const auto doctor = [&m] { return findings(m.run({"doctor", "--json"})); };
  const lines all = {"doctor", "--json", "--root", m.root().string()};
  EXPECT_EQ(findings(machine::run_as_given(all)), "no-browser 1");

  const fs::path& file = m.registered();
  constexpr auto public_file = fs::perms::owner_read | fs::perms::owner_write |
                               fs::perms::group_read | fs::perms::others_read;
  EXPECT_EQ(fs::status(file).permissions(), public_file);
  EXPECT_EQ(findings(machine::run_as_given(all)), "manifest-good started 0");
  EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);

  fs::create_directories(m.root() / "var/lib/flatpak/app/com.vivaldi.Vivaldi");
  EXPECT_EQ(doctor(), "sandboxed started 1");
  fs::create_directories(m.root() / "usr/bin/vivaldi");
  EXPECT_EQ(doctor(), "sandboxed manifest-good started 0");
  fs::remove_all(m.root() / "var");
  fs::create_directories(m.root() / "snap/vivaldi");
  EXPECT_EQ(doctor(), "sandboxed manifest-good started 0");
  fs::remove_all(m.root() / "snap");

  for (const fs::path& open : {m.library(), m.host(), m.host().parent_path()}) {
    const fs::perms before = fs::status(open).permissions();
    fs::permissions(open, fs::perms::group_write, fs::perm_options::add);
    EXPECT_EQ(doctor(), "manifest-good writable-by-others started 0") << open;
    fs::permissions(open, before);
  }

  const fs::path link = m.root() / "link";
  fs::create_symlink(m.host(), link);
  m.run({"install", "--extension-id", id, "--force", "--host", link.string()});
  EXPECT_EQ(doctor(), "manifest-good started 0") << "a link to the host";
  m.install({"--force"});

  fs::remove(m.host());
  write_text(m.host(), "#!/bin/sh\nexec yes\n");
  fs::permissions(m.host(), fs::perms::owner_all);
  EXPECT_EQ(doctor(), "manifest-good host-hangs 1") << "it never stops talking";
  write_text(m.host(), "#!/bin/sh\nsleep 5 2>&1 &\n");
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(doctor(), "manifest-good started 0");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3))
      << "the output outlives the host";

  fs::remove(file);
  fs::create_symlink(m.root() / "nowhere", file);
  EXPECT_EQ(doctor(), "manifest-unreadable 1") << "a link that leads nowhere";
}
