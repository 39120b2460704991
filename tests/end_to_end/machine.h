// A system in a folder, where systems have folders, with a host that can be registered and the
// program that does it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "tests/end_to_end/system_fixture.h"
#include "tests/end_to_end/tested_host.h"

// Ids of extensions.
inline const std::string id(32, 'a');
inline const std::string other_id(32, 'p');

std::string read_text(const std::filesystem::path& path);
void write_text(const std::filesystem::path& path, const std::string& text);

// The text with the first `from` replaced, if there is one.
std::string replaced(std::string text, const std::string& from, const std::string& to);

// The ids of what cfsetup reports in JSON, in its order, and its exit value.
std::string findings(const outcome& examined);

class machine {
 public:
  machine();
  ~machine();

  std::filesystem::path root() const { return folder_ / "root"; }
  std::filesystem::path home() const;
  std::filesystem::path host() const { return folder_ / "host" / HOST_NAME; }
  std::filesystem::path recording() const { return folder_ / "recording"; }
  std::filesystem::path setup() const;
  std::filesystem::path library() const { return host().parent_path() / LIBRARY_NAME; }
  void put_library(const std::string& path);
  void script(const std::string& text) { write_text(host().parent_path() / "script", text); }

  // Puts a file below the root, or with "~/" in front below the home folder.
  void put(const std::string& path, const std::string& text = {}) const;

  // Runs cfsetup, for Vivaldi if the arguments don't begin otherwise, in the folder or as it
  // stands.
  outcome run(lines arguments) const;
  outcome run_as_given(const lines& arguments) const;

  // What the first advice with a command says, that on a fault if there is one.
  outcome follow(const outcome& advised) const;

  outcome install(const lines& more = {}) const;
  std::string doctor(const lines& more = {}) const;

  // Registers the host, and gives the manifest's path as it was reported.
  const std::filesystem::path& registered(const lines& more = {});

 private:
  std::filesystem::path folder_ = make_folder();
  std::filesystem::path manifest_;
};

using damage = std::function<void(machine&)>;

// Replaces a part of the registered manifest.
damage changed(const std::string& from, const std::string& to);

// For what puts files into a system of its own.
class setup_in_root : public testing::Test {
 protected:
  void SetUp() override {
    if (registration_options({}).empty()) GTEST_SKIP() << "registrations have no root here";
  }
  machine m;
};
