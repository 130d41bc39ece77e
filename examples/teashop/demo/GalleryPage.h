#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "examples/teashop/demo/GalleryPicture.h"

namespace teashop {

/// The pictures of the gallery on one page, as phones on a light ground, with its pictures in a folder beside it. Main
/// thread.
class GalleryPage {
 public:
  /// Writes to "gallery.html" and the folder "gallery" inside that folder, which there is.
  explicit GalleryPage(std::filesystem::path folder);

  /// Writes the picture's file. Pictures of one section follow each other.
  void add(const GalleryPicture& picture);
  /// Writes the page. False when it, or a picture before, could not be written.
  bool write();

 private:
  struct Frame {
    std::string file, title, caption;
  };
  struct Part {
    GallerySection section;
    std::vector<Frame> frames;
  };
  static void writePart(std::ostream& page, const Part& part);

  std::filesystem::path folder_;
  std::vector<Part> parts_;
  bool isWhole_ = true;  // every file so far was written
};

}  // namespace teashop
