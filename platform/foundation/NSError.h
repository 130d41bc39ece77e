#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace platform {

/// Errors of files. Codes: those of `NSFileError`.
inline constexpr const char* NSCocoaErrorDomain = "NSCocoaErrorDomain";

/// Why something with a file failed.
enum NSFileError : std::int64_t {
  NSFileNoSuchFileError = 4,
  NSFileReadUnknownError = 256,
  NSFileReadNoPermissionError = 257,
  NSFileWriteUnknownError = 512,
  NSFileWriteNoPermissionError = 513,
  NSFileWriteInvalidFileNameError = 514,
  NSFileWriteFileExistsError = 516,
  NSFileWriteUnsupportedSchemeError = 518,
  NSFileWriteOutOfSpaceError = 640,
  NSFileWriteVolumeReadOnlyError = 642,
};

/// What went wrong: whose error it is, which one, and a sentence for people. A value; any thread.
class NSError {
 public:
  NSError(std::string domain, std::int64_t code, std::string localizedDescription)
      : domain_(std::move(domain)), code_(code), localizedDescription_(std::move(localizedDescription)) {}
  /// A file could not be written, made or removed; `reason` is what `errno` said.
  static NSError fileError(int reason, const std::string& path);

  const std::string& domain() const { return domain_; }
  std::int64_t code() const { return code_; }
  const std::string& localizedDescription() const { return localizedDescription_; }
  /// For log lines: domain, code and sentence.
  std::string description() const;
  friend bool operator==(const NSError&, const NSError&) = default;

 private:
  std::string domain_;
  std::int64_t code_;
  std::string localizedDescription_;
};

}  // namespace platform
