#pragma once

#include <QFont>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/engine/FontFace.h"

namespace platform {

/// A face with the Qt font that draws it.
struct QtFace : FontFace {
  QFont font;
  /// The font at a size in points of the platform (a point is a pixel of the unscaled canvas).
  QFont at(double pointSize) const;
};

/// Finds faces among the installed and the registered fonts, each looked up once. Main thread, except `add`.
class QtFonts {
 public:
  const QtFace& system(int weight, bool italic);
  const QtFace& monospaced(int weight);
  const QtFace* named(const std::string& name);
  /// Makes a font file known under its PostScript name, from the next look-up on. Any thread.
  void add(std::string data, std::string postScriptName);

 private:
  const QtFace& keep(QFont font);
  /// Qt's font list is the main thread's, so what other threads add waits here.
  void takeAdded();
  const QtFace* installed(const std::string& name);

  std::deque<QtFace> faces_;
  std::map<std::pair<int, bool>, const QtFace*> system_;
  std::map<int, const QtFace*> monospaced_;
  std::map<std::string, const QtFace*> named_;
  std::mutex mutex_;
  std::vector<std::pair<std::string, std::string>> added_;
};

}  // namespace platform
