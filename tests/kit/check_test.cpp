// cfcheck reports each fault that a library can have.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "platform/child_process.h"
#include "platform/library_facts.h"

namespace fs = std::filesystem;

namespace {

class checked_library : public testing::Test {
 protected:
  checked_library() { fs::create_directories(folder_); }
  ~checked_library() override { fs::remove_all(folder_); }

  void take(const fs::path& library) {
    fs::copy_file(library, library_, fs::copy_options::overwrite_existing);
  }
  void set_fault(const std::string& word) { std::ofstream(folder_ / "fault") << word; }
  void write(const std::string& bytes) { std::ofstream(library_, std::ios::binary) << bytes; }

  static std::string content_of(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  // The report, and the exit value.
  std::string run(const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = options;
    arguments.insert(arguments.end(), {"--wait", "0", "--timeout", "3000", library_.string()});
    std::string error, text;
    const auto check = platform::child_process::start(CHECK_PROGRAM, arguments, error);
    if (check == nullptr) return error;
    char block[4096];
    while (const auto count = check->read(block, sizeof block, check->forever).value_or(0)) {
      text.append(block, count);
    }
    return text + std::to_string(check->wait(check->forever).value_or(-1));
  }

  // The ids in the report, and the exit value.
  std::string findings() {
    const std::string text = run({"--json"});
    std::string found;
    for (std::size_t at = 0; (at = text.find("\"id\":\"", at)) != std::string::npos;) {
      at += 6;
      found += text.substr(at, text.find('"', at) - at) + ' ';
    }
    return found + text.back();
  }

  const fs::path folder_ =
      fs::temp_directory_path() / ("cfcheck-" + std::to_string(std::random_device()()));
  const fs::path library_ = folder_ / LIBRARY_NAME;
};

}  // namespace

TEST_F(checked_library, each_fault_is_found) {
  const std::pair<const char*, const char*> cases[] = {
      {"none", "library-good 0"},
      {"crash", "library-crashes 1"},
      {"hang", "library-hangs 1"},
      {"exit", "library-ends-process 1"},
      {"no-api", "api-null 1"},
      {"no-interface", "interface-missing 1"},
      {"any", "interface-for-any-name library-good 0"},
      {"observer", "observer-destroyed library-good 0"},
      {"object", "object-unreadable 1"},
      {"null", "object-unreadable 1"},
      {"careless", "answers-every-name 1"},
      {"unknown", "notification-unknown library-good 0"},
      {"record", "record-unreadable 1"},
      {"packet", "packet-unreadable 1"},
      {"type", "payload-unknown library-good 0"},
      {"form", "form-damaged 1"},
      {"negative", "payload-length 1"},
      {"length", "payload-length 1"},
      {"settings-order", "settings-damaged 1"},
      {"settings-table", "settings-damaged 1"},
      {"post-crash", "library-crashes 1"},
      {"post-hang", "library-hangs 1"},
      {"output", "writes-output 1"},
      {"end-late", "end-late 1"},
      {"end-exit", "library-ends-process 1"},
  };
  take(FAULTY_LIBRARY);
  for (const auto& [word, expected] : cases) {
    set_fault(word);
    EXPECT_EQ(findings(), expected) << word << '\n' << run();
  }
}

// These are reported for each of the six messages.
TEST_F(checked_library, each_misuse_of_a_message_is_found) {
  const std::pair<const char*, const char*> cases[] = {
      {"change", "message-changed"},       {"beside", "message-changed"},
      {"destroy", "destroyed-by-library"}, {"keep", "never-released"},
      {"decrease", "never-released"},      {"twice", "released-twice"},
      {"late", "used-after-release"},
  };
  take(FAULTY_LIBRARY);
  for (const auto& [word, id] : cases) {
    set_fault(word);
    std::string expected;
    for (int i = 0; i < 6; ++i) expected += std::string(id) + ' ';
    EXPECT_EQ(findings(), expected + '1') << word << '\n' << run();
  }
}

TEST_F(checked_library, tells_why_it_cannot_be_loaded) {
  EXPECT_EQ(findings(), "library-missing 1");
  write("no library");
  EXPECT_EQ(findings(), "not-a-library 1");
  take(CHECK_PROGRAM);
  EXPECT_EQ(findings().back(), '1');
  take(NO_ENTRY_LIBRARY);
  EXPECT_EQ(findings(), "api-missing 1");
  take(DEPENDENT_LIBRARY);
  EXPECT_NE(run().find(DEPENDENCY_NAME), std::string::npos) << run();
  EXPECT_EQ(findings(), "dependency-missing 1");

  std::string bytes = content_of(FAULTY_LIBRARY);
  write(bytes.substr(0, 8192));
  EXPECT_EQ(findings(), "library-unloadable 1");
  const bool is_elf = bytes[0] == '\x7F';
  const std::size_t machine = is_elf ? 18 : bytes.find("PE\0\0") + 4;
  bytes.replace(machine, 2, is_elf ? std::string("\xB7\0", 2) : std::string("\x64\xAA"));
  write(bytes);
  EXPECT_NE(run().find(" is for aarch64, this host for x86-64 [other-architecture]"),
            std::string::npos)
      << run();
}

// However damaged a file is, its facts come from inside it.
TEST(library_facts, survive_damaged_files) {
  std::ifstream file(FAULTY_LIBRARY, std::ios::binary);
  std::string bytes(8192, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  for (std::size_t size = 0; size < bytes.size(); size += 7) {
    (void)platform::facts_of_library(std::string(bytes, 0, size));
    std::string damaged(bytes);
    damaged.replace(size, 4, 4, '\xFF');
    (void)platform::facts_of_library(damaged);
  }
  EXPECT_EQ(platform::facts_of_library(bytes).machine, "x86-64");
  EXPECT_EQ(platform::facts_of_library("\xCF\xFA\xED\xFE").system, "macOS");
}
