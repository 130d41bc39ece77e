#include "tests/support/Pictures.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace platform::test {

namespace {

constexpr int channelTolerance = 26;
constexpr double shareTolerance = 1.0 / 500;

void writeFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) ADD_FAILURE() << "cannot write " << path;
}

/// Compilers are given paths relative to the build; what follows the folder of all tests is the same everywhere.
std::filesystem::path sourceFolder(const std::string& file) {
  const std::size_t tests = file.rfind("/tests/");
  const std::string inside = tests == std::string::npos ? file : file.substr(tests + 7);
  return (std::filesystem::path(TESTS_FOLDER) / inside).parent_path();
}

bool isFarOff(std::uint32_t a, std::uint32_t b) {
  for (int shift = 0; shift < 32; shift += 8) {
    const int difference = static_cast<int>((a >> shift) & 0xFF) - static_cast<int>((b >> shift) & 0xFF);
    if (std::abs(difference) > channelTolerance) return true;
  }
  return false;
}

/// The share of pixels that differ visibly, or 1 for pictures of different sizes.
double differenceOf(const Bitmap& a, const Bitmap& b) {
  if (a.width() != b.width() || a.height() != b.height() || a.isEmpty()) return 1;
  const std::size_t count = static_cast<std::size_t>(a.width()) * static_cast<std::size_t>(a.height());
  std::size_t off = 0;
  for (std::size_t i = 0; i < count; ++i) off += isFarOff(a.data()[i], b.data()[i]) ? 1 : 0;
  return static_cast<double>(off) / static_cast<double>(count);
}

}  // namespace

void expectPicture(const UIImage& image, const std::string& name, const char* sourceFile) {
  const std::filesystem::path folder = sourceFolder(sourceFile) / "pictures";
  const std::filesystem::path stored = folder / (name + ".png");
  if (std::getenv("LUMICOR_UPDATE_PICTURES")) {
    std::filesystem::create_directories(folder);
    writeFile(stored, image.pngRepresentation());
    return;
  }
  const Ref<UIImage> expected = UIImage::imageWithContentsOfFile(stored.string());
  if (!expected) ADD_FAILURE() << "there is no picture " << stored;
  const double difference = expected ? differenceOf(*image.cgImage(), *expected->cgImage()) : 1;
  if (difference <= shareTolerance) return;
  writeFile(name + ".actual.png", image.pngRepresentation());
  ADD_FAILURE() << "picture \"" << name << "\" differs in " << difference * 100 << " % of its pixels";
}

}  // namespace platform::test
