// The interface that client libraries are built against.
#include "messages/agent_interface.h"

#include <gtest/gtest.h>

#include <cstring>

#include "messages/website.h"

namespace {

// The slot of a virtual function, by the ABI that all our compilers follow: a pointer to it holds
// its offset in bytes, and an odd number in the first or, on arm64, the second half.
template <class Member>
std::size_t slot_of(Member member) {
  std::size_t halves[2];
  static_assert(sizeof halves == sizeof member);
  std::memcpy(halves, &member, sizeof halves);
  return (halves[0] + halves[1]) % 2 == 1 ? halves[0] / sizeof(void*) : SIZE_MAX;
}

template <class... Members>
void expect_order(const char* name, Members... members) {
  std::size_t slot = 0;
  const auto expect_next = [&](std::size_t found) { EXPECT_EQ(found, slot++) << name; };
  (expect_next(slot_of(members)), ...);
}

template <class Bag>
void expect_maps_behind(std::size_t slot) {
  EXPECT_EQ(slot_of(static_cast<const text_map& (Bag::*)()>(&Bag::map)), slot);
  EXPECT_EQ(slot_of(static_cast<const text_map& (Bag::*)() const>(&Bag::map)), slot + 1);
}

TEST(Interface, SlotsStandInTheirOrder) {
  expect_order("iCfMsg", &iCfMsg::deletingDestructor, &iCfMsg::release, &iCfMsg::query,
               &iCfMsg::nameInto, &iCfMsg::write, &iCfMsg::read, &iCfMsg::spare, &iCfMsg::addRef,
               &iCfMsg::decRef);
  expect_order("propsW_t", &propsW_t::deletingDestructor, &propsW_t::destroy, &propsW_t::empty,
               &propsW_t::size, &propsW_t::add, &propsW_t::merge, &propsW_t::assign,
               &propsW_t::clear, &propsW_t::erase, &propsW_t::has, &propsW_t::set, &propsW_t::get);
  expect_maps_behind<propsW_t>(12);
  using props_cursor = propsW_t::const_iterator;
  expect_order("propsW_t::const_iterator", &props_cursor::deletingDestructor, &props_cursor::key,
               &props_cursor::value, &props_cursor::toFirst, &props_cursor::atEnd,
               &props_cursor::toNext);
  expect_order("CfSettings", &CfSettings::deletingDestructor, &CfSettings::assign,
               &CfSettings::merge, &CfSettings::destroy, &CfSettings::nameInto, &CfSettings::clear,
               &CfSettings::set, &CfSettings::setEmpty, &CfSettings::get, &CfSettings::size);
  expect_maps_behind<CfSettings>(10);
  EXPECT_EQ(slot_of(&CfSettings::dump), 12U);
  using settings_cursor = CfSettings::const_iterator;
  expect_order("CfSettings::const_iterator", &settings_cursor::deletingDestructor,
               &settings_cursor::destroy, &settings_cursor::toFirst, &settings_cursor::atEnd,
               &settings_cursor::toNext, &settings_cursor::key, &settings_cursor::value);
  expect_order("CfWndPos", &CfWndPos::write, &CfWndPos::read);
  expect_order("cfIStream", &cfIStream::deletingDestructor);
  expect_order("cfSink", &cfSink::deletingDestructor, &cfSink::write_bytes);
  expect_order("iCfClientObs", &iCfClientObs::deletingDestructor, &iCfClientObs::notify);
  expect_order("iCfClient", &iCfClient::deletingDestructor, &iCfClient::addObserver,
               &iCfClient::post);
  expect_order("cfApi", &cfApi::deletingDestructor, &cfApi::getInterface);
}

TEST(Interface, HasTheNameThatLibrariesAnswerTo) {
  EXPECT_EQ(wide_view(client_interface.text()), u"iCfClient.1");
}

}  // namespace
