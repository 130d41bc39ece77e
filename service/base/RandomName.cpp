#include "service/base/RandomName.h"

#include <array>
#include <stdexcept>
#include <sys/random.h>

namespace service {

std::string randomName() {
  std::array<unsigned char, 16> bytes{};
  if (::getentropy(bytes.data(), bytes.size()) != 0) throw std::runtime_error("the system gives no random numbers");
  std::string name;
  for (const unsigned char byte : bytes) {
    name += "0123456789abcdef"[byte >> 4];
    name += "0123456789abcdef"[byte & 15];
  }
  return name;
}

}  // namespace service
