#include "transport/random_id.h"

#include "platform/platform.h"

void random_id(char* out) {
  constexpr char alphabet[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int characters = sizeof alphabet - 1;
  for (std::size_t i = 0; i < random_id_length; ++i) {
    out[i] = alphabet[platform::random_number() % characters];
  }
}
