#include "service/base/TextFile.h"

#include <fstream>
#include <iterator>

#include "service/base/LoadError.h"

namespace service {

std::string readTextFile(const std::filesystem::path& file) {
  constexpr std::uintmax_t kMaximumSize = 16u << 20;
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) throw LoadError(file.string() + ": cannot be read");
  if (std::filesystem::file_size(file, error) > kMaximumSize)
    throw LoadError(file.string() + ": is larger than 16 MiB");
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) throw LoadError(file.string() + ": cannot be read");
  return text;
}

}  // namespace service
