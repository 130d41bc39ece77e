// Runs every harness over the files of its folder, so that what failed once never fails again.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/Harnesses.h"

namespace {

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return std::fputs("usage: fuzz_replay_test FOLDER\n", stderr), 2;
  for (const auto& folder : filesIn(words[1])) {
    if (fuzz::harnessNamed(folder.filename().string())) continue;
    return std::fprintf(stderr, "%s is the folder of no harness\n", folder.c_str()), 1;
  }
  for (const fuzz::Harness& harness : fuzz::harnesses()) {
    const auto files = filesIn(std::filesystem::path(words[1]) / harness.name);
    if (files.empty()) return std::fprintf(stderr, "there is no input for %s\n", harness.name.data()), 1;
    for (const auto& file : files) {
      std::printf("%s/%s\n", harness.name.data(), file.filename().c_str());
      std::fflush(stdout);  // the last line names the input that ended the process
      std::ifstream stream(file, std::ios::binary);
      harness.run(std::string((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>()));
    }
  }
  return 0;
}
