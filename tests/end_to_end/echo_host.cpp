// A host that returns every byte, and ends with the exit value in its first argument.
#include <cstdlib>
#include <vector>

#include "platform/platform.h"
#include "platform/raw_streams.h"

int main(int argc, char** argv) {
  platform::prepare_standard_streams();
  std::vector<char> block(10'000);
  while (const std::size_t count = platform::read_standard_input(block.data(), block.size())) {
    if (!platform::write_standard_output(block.data(), count)) return 1;
  }
  return argc > 1 ? std::atoi(argv[1]) : 0;
}
