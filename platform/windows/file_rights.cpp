#include "platform/file_rights.h"

#include <windows.h>
// To be included after windows.h.
#include <aclapi.h>

#include "platform/files.h"

namespace platform {
namespace {

// Groups that everybody belongs to.
bool is_everybody(PSID id) {
  return IsWellKnownSid(id, WinWorldSid) != 0 || IsWellKnownSid(id, WinAuthenticatedUserSid) != 0 ||
         IsWellKnownSid(id, WinBuiltinUsersSid) != 0 || IsWellKnownSid(id, WinInteractiveSid) != 0;
}

bool lets_everybody_write(void* entry) {
  constexpr DWORD changes =
      FILE_WRITE_DATA | DELETE | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;
  const auto* const header = static_cast<ACE_HEADER*>(entry);
  if (header->AceType != ACCESS_ALLOWED_ACE_TYPE || (header->AceFlags & INHERIT_ONLY_ACE) != 0) {
    return false;
  }
  auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
  return (allowed->Mask & changes) != 0 && is_everybody(&allowed->SidStart);
}

}  // namespace

bool is_superuser() { return false; }

bool others_may_write(const std::string& path) {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetNamedSecurityInfoA(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS) {
    return false;
  }
  // Without a list everybody may do everything.
  bool found = list == nullptr;
  for (DWORD i = 0; !found && i < list->AceCount; ++i) {
    void* entry = nullptr;
    found = GetAce(list, i, &entry) != 0 && lets_everybody_write(entry);
  }
  LocalFree(descriptor);
  return found;
}

std::vector<std::string> parts_that_others_may_write(const std::string& path) {
  std::vector<std::string> parts;
  for (std::string part = path, above; part != above; above = part, part = folder_of(part)) {
    if (others_may_write(part)) parts.push_back(part);
  }
  return parts;
}

std::string foreign_part(const std::string&) { return {}; }

bool keep_others_from_writing(const std::string& path, std::string& error) {
  error = "can't change who may write " + path + ": its properties do that";
  return false;
}

bool make_executable(const std::string&, std::string&) { return true; }

}  // namespace platform
