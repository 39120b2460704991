#include "transport/random_id.h"

#include <cstdlib>

void random_id(char* out) {
  constexpr char alphabet[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int characters = sizeof alphabet - 1;
  // rand is what the tags need: no secret hangs on them, and it costs nothing at start.
  for (std::size_t i = 0; i < random_id_length; ++i) {
    out[i] = alphabet[std::rand() % characters];  // NOLINT(cert-msc30-c,cert-msc50-cpp)
  }
}
