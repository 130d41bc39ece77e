#pragma once

#include <functional>
#include <string>
#include <vector>

namespace lumicor {

/// The pictures of a demonstration, one for each snapshot. On the main thread a picture costs some pointers: it is the
/// last frame of the screen, which shares what did not change with the frames before. Pixels are put together, encoded
/// and written in the background, into files of their own that are gone once they are uploaded. A screen that looks as
/// it did shares the file. Main thread, except where a member says any.
class LumicorScreenshots {
 public:
  /// Pictures are taken from here on; those of a demonstration before are dropped.
  static void begin();
  /// One for the next snapshot. Nothing outside a demonstration.
  static void take(const std::string& viewName);
  /// No more are taken. Those taken stay until they are uploaded or dropped.
  static void stop();
  /// Sends the files, and tells the media keys by snapshot: empty where there is no file or the service refused it. The
  /// completion runs once, on any thread.
  static void upload(std::function<void(std::vector<std::string> keys)> completion);
  /// Removes the files and forgets them.
  static void drop();
};

}  // namespace lumicor
