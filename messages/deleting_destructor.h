// Slot 0 of every table of the interface: an ordinary virtual function that destroys the object.
//
// Compilers disagree on how many slots a virtual C++ destructor takes, so none of these classes has
// one, and nobody uses `delete` on an interface. Whoever gives up an object calls slot 0 through
// its table, so that the module that made the object also frees its memory.
#pragma once

#include <cstdint>
#include <new>

// With this flag slot 0 also frees the memory. The other bits mean nothing.
constexpr std::uint32_t free_memory = 1;

// The body of slot 0 for an object of exactly this class. The object must have been made with `new`
// if `flags` asks for its memory to be freed. Returns the object's address, even if it is gone.
template <class Class>
void* destroy_by_flags(Class* object, std::uint32_t flags) {
  // Kept as a number: a pointer to freed memory may not be used at all.
  const auto address = reinterpret_cast<std::uintptr_t>(object);
  object->Class::~Class();
  if ((flags & free_memory) != 0) ::operator delete(object);
  return reinterpret_cast<void*>(address);  // NOLINT(clang-analyzer-cplusplus.NewDelete)
}

// The base of a class that implements an interface; it provides slot 0.
//
//   class my_client final : public implements<my_client, iCfClient> { ... };
template <class Class, class Interface>
class implements : public Interface {
 public:
  using Interface::Interface;

  void* deletingDestructor(std::uint32_t flags) override {
    return destroy_by_flags(static_cast<Class*>(this), flags);
  }

 protected:
  ~implements() = default;
};
