// What an author writes for a compiler that gives a virtual destructor two slots: slot 0 and `name`
// as the tables have them.
#include <new>

#define EXPORTED extern "C" __attribute__((visibility("default")))
#define SLOT_0(class_name) \
  virtual void* deletingDestructor(uint32_t) { return this; }
#define NAME_SLOT                                  \
  virtual cfName* nameInto(cfName* result) const { \
    *result = cfName{u"library"};                  \
    return result;                                 \
  }

template <class Object>
cfName name_of(const Object& object) {
  cfName result = {nullptr};
  object.nameInto(&result);
  return result;
}

template <class Object>
void destroy(Object* object) {
  object->deletingDestructor(1);
}
