#include "platform/private_file.h"

#include <windows.h>
// To be included after windows.h.
#include <sddl.h>

#include <vector>

#include "platform/windows/handle.h"

namespace platform {
namespace {

std::string reason(const char* action, const std::string& path) {
  return std::string("can't ") + action + ' ' + path + ": error " + std::to_string(GetLastError());
}

std::string own_user() {
  HANDLE opened = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) return {};
  const handle token(opened);
  DWORD size = 0;
  GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
  std::vector<unsigned char> user(size);
  LPSTR text = nullptr;
  if (size == 0 || GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) == 0 ||
      ConvertSidToStringSidA(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &text) == 0) {
    return {};
  }
  std::string id = text;
  LocalFree(text);
  return id;
}

// Full access for this user and none for others, whatever would be inherited from the folder.
class own_rights {
 public:
  own_rights() {
    const std::string rights = "D:P(A;;FA;;;" + own_user() + ")";
    if (ConvertStringSecurityDescriptorToSecurityDescriptorA(rights.c_str(), SDDL_REVISION_1,
                                                             &descriptor_, nullptr) != 0) {
      attributes_ = {sizeof attributes_, descriptor_, FALSE};
    }
  }
  ~own_rights() { LocalFree(descriptor_); }
  own_rights(const own_rights&) = delete;
  own_rights& operator=(const own_rights&) = delete;

  // Null if the system gave none.
  SECURITY_ATTRIBUTES* attributes() { return descriptor_ == nullptr ? nullptr : &attributes_; }

 private:
  PSECURITY_DESCRIPTOR descriptor_ = nullptr;
  SECURITY_ATTRIBUTES attributes_ = {};
};

class windows_file final : public private_file {
 public:
  windows_file(handle file, const std::string& path) : file_(std::move(file)), path_(path) {}

  bool append(std::string_view text, std::string& error) override {
    DWORD count = 0;
    if (WriteFile(file_.get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr) !=
            0 &&
        count == text.size()) {
      return true;
    }
    error = reason("write", path_);
    return false;
  }

 private:
  const handle file_;
  const std::string path_;
};

}  // namespace

std::unique_ptr<private_file> private_file::create(const std::string& path, bool& exists,
                                                   std::string& error) {
  own_rights rights;
  exists = false;
  if (rights.attributes() == nullptr) {
    error = reason("restrict", path);
    return nullptr;
  }
  handle file(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, rights.attributes(),
                          CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
  exists = !file.valid() && GetLastError() == ERROR_FILE_EXISTS;
  if (!file.valid()) {
    error = reason("make", path);
    return nullptr;
  }
  return std::make_unique<windows_file>(std::move(file), path);
}

}  // namespace platform
