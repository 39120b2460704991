// cfcheck reports each fault that a library can have.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "platform/child_process.h"
#include "platform/library_facts.h"
#include "tests/unit/table.h"

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
  take(FAULTY_LIBRARY);
  const auto findings_with = [this](const std::string& word) {
    set_fault(word);
    // A misuse is found for each of the six messages.
    const std::string found = findings(), one = found.substr(0, found.find(' ') + 1);
    const bool six = found == one + one + one + one + one + one + '1';
    return six ? "six times " + one + '1' : found;
  };
  check_file(findings_with, FAULTS);
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
  bytes.replace(machine, 2, is_elf ? std::string("\x16\0", 2) : std::string("\x64\xAA"));
  write(bytes);
  EXPECT_NE(
      run().find(is_elf ? " is for s390x, this host for " : " is for aarch64, this host for "),
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
  const std::string machine = platform::facts_of_library(bytes).machine;
  EXPECT_TRUE(machine == "x86-64" || machine == "aarch64") << machine;
  EXPECT_EQ(platform::facts_of_library("\xCF\xFA\xED\xFE").system, "macOS");
}
