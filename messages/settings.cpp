#include "messages/settings.h"

#include "messages/deleting_destructor.h"

void (*settings_dump)(const text_map& pairs, const wide_char* prefix) = nullptr;

namespace {

bool is_blank(const wide_char* key) { return key == nullptr || *key == 0; }

struct default_setting {
  wide_view key;
  wide_view value;
};

constexpr default_setting default_settings[] = {
    {u"pwdman.enabled", u"false"},
    {u"pwdman.masterPasswordEnabled", u"false"},
    {u"pwdman.askMasterPasswordAtLogin", u"0"},  // a number, unlike its neighbours
    {u"pwdman.lockCofferOnIdle", u"false"},
    {u"pwdman.autofillEnabled", u"false"},
    {u"pwdman.autoSignIn", u"false"},
    {u"pwdman.autofillMode", u"0"},
    {u"pwdman.saveMode", u"0"},
    {u"pwdman.showMultilogsDlg", u"true"},
    {u"pwdman.IE.enabled", u"true"},
    {u"pwdman.Firefox.enabled", u"true"},
    {u"pwdman.Chrome.enabled", u"true"},
    {u"pwdman.OBk.enabled", u"true"},
    {u"pwdman.Skype.enabled", u"true"},
    {u"pwdman.Yahoo.enabled", u"true"},
    {u"pwdman.showFillFormsWnd", u"true"},
};

}  // namespace

void* CfSettings::deletingDestructor(std::uint32_t flags) { return destroy_by_flags(this, flags); }

void CfSettings::assign(const CfSettings& other) {
  clear();
  merge(other);
}

void CfSettings::merge(const CfSettings& other) { map_.merge(other.map()); }

void CfSettings::destroy() { deletingDestructor(free_memory); }

cfName* CfSettings::nameInto(cfName* result) const {
  *result = cfName(u"CfSettings");
  return result;
}

void CfSettings::clear() { map_.clear(); }

bool CfSettings::set(const wide_char* key, const wide_char* value) {
  if (is_blank(key)) return false;
  if (value == nullptr) {
    map_.erase(key);
  } else {
    map_.set(key, value);
  }
  return true;
}

bool CfSettings::setEmpty(const wide_char* key) {
  if (is_blank(key)) return false;
  map_.set(key, wide_view());
  return true;
}

const wide_char* CfSettings::get(const wide_char* key) const {
  const text_map::pair* const found = is_blank(key) ? nullptr : map_.find(key);
  return found == nullptr ? nullptr : found->value;
}

std::uint64_t CfSettings::size() const { return map_.size(); }

const text_map& CfSettings::map() { return map_; }

const text_map& CfSettings::map() const { return map_; }

void CfSettings::dump(const wide_char* prefix) const {
  if (settings_dump != nullptr) settings_dump(map_, prefix == nullptr ? u"" : prefix);
}

CfDummySettings::CfDummySettings() {
  for (const default_setting& setting : default_settings) enter(setting.key, setting.value);
}

void* CfDummySettings::deletingDestructor(std::uint32_t flags) {
  return destroy_by_flags(this, flags);
}

cfName* CfDummySettings::nameInto(cfName* result) const {
  *result = cfName(u"__dumySettings");
  return result;
}

bool CfDummySettings::set(const wide_char*, const wide_char*) { return false; }

void* CfSettings::const_iterator::deletingDestructor(std::uint32_t flags) {
  return destroy_by_flags(this, flags);
}

void CfSettings::const_iterator::destroy() { deletingDestructor(free_memory); }

const text_map::pair* CfSettings::const_iterator::toFirst() { return position_ = map_.begin(); }

bool CfSettings::const_iterator::atEnd() const { return position_ == map_.end(); }

const text_map::pair* CfSettings::const_iterator::toNext() {
  if (!atEnd()) ++position_;
  return position_;
}

const wide_char* CfSettings::const_iterator::key() const { return position_->key; }

const wide_char* CfSettings::const_iterator::value() const { return position_->value; }
