#pragma once

#include <QString>
#include <QTextBoundaryFinder>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace platform {

/// A text as Qt wants it (UTF-16), and which byte of the UTF-8 each unit came from. What is not UTF-8 becomes U+FFFD;
/// control characters but line breaks and tabs become invisible.
class QtTextSource {
 public:
  /// Reads no more than `maximumUnits`; a text that is longer ends in "…".
  QtTextSource(std::string_view utf8, std::size_t maximumUnits);

  const QString& text() const { return text_; }
  bool isCut() const { return cut_; }
  std::size_t byteAt(qsizetype unit) const { return bytes_[static_cast<std::size_t>(unit)]; }
  /// The unit that begins at the byte, or the one the byte is part of.
  qsizetype unitAt(std::size_t byte) const;
  bool isLetterBoundary(std::size_t byte) const;
  bool isWordBoundary(std::size_t byte) const;

 private:
  void append(char32_t letter, std::size_t byte);
  bool isBoundary(std::unique_ptr<QTextBoundaryFinder>& finder, QTextBoundaryFinder::BoundaryType type,
                  std::size_t byte) const;

  QString text_;
  std::vector<std::uint32_t> bytes_;  // one more than the text has units
  bool cut_ = false;
  mutable std::unique_ptr<QTextBoundaryFinder> letters_;
  mutable std::unique_ptr<QTextBoundaryFinder> words_;
};

}  // namespace platform
