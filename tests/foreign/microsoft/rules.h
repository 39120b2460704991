// What an author writes for a compiler that gives a virtual destructor one slot, and returns a
// class from a member function through a hidden pointer.
#define EXPORTED extern "C" __declspec(dllexport)
#define SLOT_0(class_name) \
  virtual ~class_name() {}
#define NAME_SLOT \
  virtual cfName name() const { return cfName{u"library"}; }

template <class Object>
cfName name_of(const Object& object) {
  return object.name();
}

template <class Object>
void destroy(Object* object) {
  delete object;
}

// Functions that the compiler expects from its runtime.
extern "C" void* malloc(size_t);
extern "C" void free(void*);
extern "C" int _purecall() { return 0; }
extern "C" int _fltused = 0;
void* operator new(size_t size) { return malloc(size); }
inline void* operator new(size_t, void* room) noexcept { return room; }
void operator delete(void* memory) noexcept { free(memory); }
void operator delete(void* memory, size_t) noexcept { free(memory); }
