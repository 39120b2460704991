#include <windows.h>
// To be included after windows.h.
#include <aclapi.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/windows/handle.h"
#include "tests/end_to_end/system_fixture.h"

namespace fs = std::filesystem;

std::vector<std::string> registration_options(const std::filesystem::path&) { return {}; }

void write_configuration(const std::string& text) {
  wchar_t common_data[MAX_PATH] = {};
  SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, common_data);
  const fs::path folder = fs::path(common_data) / "Orvanta";
  fs::create_directories(folder);
  std::ofstream(folder / "coffer.ini", std::ios::binary) << text;
}

std::unique_ptr<platform::debug_viewer> open_debug_channel() {
  std::string error;
  auto channel = platform::debug_viewer::open(error);
  if (channel == nullptr) throw std::runtime_error(error);
  return channel;
}

// The system lists the threads of a process in order of their creation.
std::int32_t main_thread(const platform::child_process& host) {
  const platform::handle threads(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  BOOL found = Thread32First(threads.get(), &entry);
  while (found != 0 && entry.th32OwnerProcessID != host.process_id()) {
    found = Thread32Next(threads.get(), &entry);
  }
  return found != 0 ? static_cast<std::int32_t>(entry.th32ThreadID) : 0;
}

bool ask_to_end(const platform::child_process&) { return false; }

// The system itself may be listed too; it may read everything anyway.
bool is_private(const fs::path& file) {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoW(file.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS) {
    return false;
  }
  DWORD owners = 0;
  for (DWORD i = 0; list != nullptr && i < list->AceCount; ++i) {
    void* entry = nullptr;
    GetAce(list, i, &entry);
    PSID who = &static_cast<ACCESS_ALLOWED_ACE*>(entry)->SidStart;
    const bool is_group =
        IsWellKnownSid(who, WinWorldSid) != 0 || IsWellKnownSid(who, WinBuiltinUsersSid) != 0;
    owners += is_group ? 2 : IsWellKnownSid(who, WinLocalSystemSid) == 0;
  }
  LocalFree(descriptor);
  return owners == 1;
}

no_room_in_files::no_room_in_files() = default;
no_room_in_files::~no_room_in_files() = default;

const bool screen_is_optional = false;

bool rest_pointer() { return test_screen().move_pointer(0, 0); }

// The system creates the desktop for the first process that asks for it, and only on a desktop does
// the pointer stay where it is put.
test_screen::test_screen(const std::string&) { GetDesktopWindow(); }

test_screen::~test_screen() { move_pointer(0, 0); }

bool test_screen::move_pointer(std::int16_t x, std::int16_t y) { return SetCursorPos(x, y) != 0; }
