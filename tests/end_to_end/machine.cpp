#include "tests/end_to_end/machine.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

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
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::string findings(const outcome& examined) {
  std::string found;
  const std::string start = R"("id":")";
  for (std::size_t at = 0; (at = examined.text.find(start, at)) != std::string::npos;) {
    at += start.size();
    found += examined.text.substr(at, examined.text.find('"', at) - at) + ' ';
  }
  return found + std::to_string(examined.exit_value);
}

machine::machine() {
  fs::create_directories(host().parent_path());
  fs::copy_file(HOST_PROGRAM, host());
  fs::copy_file(SETUP_PROGRAM, setup());
  fs::copy_file(TAP_PROGRAM, setup().parent_path() / fs::path(TAP_PROGRAM).filename());
  put_library(PROBE_LIBRARY);
}

machine::~machine() {
  std::error_code ignored;
  if (registration_options(root()).empty()) {
    // What isn't in the folder would be found by the next test.
    if (fs::is_directory(manifest_, ignored)) fs::remove(manifest_, ignored);
    run({"remove", "--force"});
    run({"remove", "--system", "--force"});
  }
  fs::remove_all(folder_, ignored);
}

fs::path machine::home() const { return root() / fs::path(std::getenv("HOME")).relative_path(); }

fs::path machine::setup() const {
  return host().parent_path() / fs::path(SETUP_PROGRAM).filename();
}

void machine::put_library(const std::string& path) {
  fs::copy_file(path, library(), fs::copy_options::overwrite_existing);
}

void machine::put(const std::string& path, const std::string& text) const {
  const fs::path file = path.starts_with("~/") ? home() / path.substr(2) : root() / path;
  fs::create_directories(file.parent_path());
  write_text(file, text);
}

outcome machine::run(lines arguments) const {
  const bool for_browser = arguments.size() < 2 || arguments[1] != "--browser";
  if (for_browser) arguments.insert(arguments.end(), {"--browser", "vivaldi"});
  const lines where = registration_options(root());
  arguments.insert(arguments.end(), where.begin(), where.end());
  return run_as_given(arguments);
}

outcome machine::run_as_given(const lines& arguments) const {
  return run_program(setup().string(), arguments);
}

outcome machine::follow(const outcome& advised) const {
  const std::string start = "un: cfsetup ";
  const std::size_t fault = advised.text.find(": fault: ");
  const std::size_t at = advised.text.find(start, fault == std::string::npos ? 0 : fault);
  if (at == std::string::npos) return {-1, "no advice in " + advised.text};
  std::istringstream words(advised.text.substr(at + start.size()));
  std::string line;
  std::getline(words, line);
  lines arguments;
  words.str(replaced(line, " ID", " " + id));
  words.clear();
  for (std::string word; words >> word;) arguments.push_back(word);
  return run_as_given(arguments);
}

outcome machine::install(const lines& more) const {
  lines arguments = {"install", "--extension-id=" + id};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return run(arguments);
}

std::string machine::doctor(const lines& more) const {
  lines arguments = {"doctor"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  arguments.emplace_back("--json");
  return findings(run(arguments));
}

const fs::path& machine::registered(const lines& more) {
  const std::string text = install(more).text;
  const std::string start = "Vivaldi: wrote ";
  EXPECT_TRUE(text.starts_with(start)) << text;
  const std::size_t end =
      std::min({text.find('\n'), text.find(" and the registry key "), text.find(", which ")});
  manifest_ = text.substr(start.size(), end - start.size());
  return manifest_;
}

damage changed(const std::string& from, const std::string& to) {
  return [from, to](machine& m) {
    const fs::path& file = m.registered();
    const std::string text = read_text(file);
    EXPECT_NE(text.find(from), std::string::npos) << from << " in " << text;
    write_text(file, replaced(text, from, to));
  };
}
