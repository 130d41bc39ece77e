#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"
#include "tests/support/ChildProcess.h"

namespace endtoend {

/// Asks again and again until the condition holds: false when it does not within the time that a slow machine may take.
bool eventually(const std::function<bool()>& condition);

/// A desktop of 1280 x 1024 pixels that nobody sees: an X server of its own, a window manager if wanted, an
/// international keyboard with dead keys and a compose key (Menu), and hands whose events no program can tell from a
/// person's. Errors of the server about windows that have just gone are passed over. Places in a window in its own
/// pixels.
class XDesktop {
 public:
  enum class Manager { none, running };
  /// `folder` takes the window manager's settings. A server that does not start ends the test program.
  XDesktop(const std::filesystem::path& folder, Manager manager);
  ~XDesktop();

  /// For DISPLAY.
  const std::string& name() const { return name_; }
  /// The visible window of that title, in any frame.
  bool findWindow(const std::string& title);

  // ---- The window that was found
  platform::CGRect frame() const;
  bool isVisible() const;
  /// What a person sees of the screen where it stands.
  platform::Bitmap picture() const;
  void move(int dx, int dy);
  /// Without a window manager at once, whatever size the window asked for.
  void resize(int width, int height);
  void minimise();
  void restore();
  /// As a press on the cross of its frame does: the window manager asks the program to delete it.
  void close();

  // ---- Hands
  void point(platform::CGPoint inWindow);
  void press();
  void release();
  void tap(platform::CGPoint inWindow);
  /// One notch of the wheel.
  void scrollUp(platform::CGPoint inWindow);
  /// The key that carries this symbol ("a", "space", "dead_acute", "Multi_key"), with shift when it needs that.
  void key(const std::string& symbol);

  /// The server goes, and takes every connection along.
  void endServer();

 private:
  struct Connection;
  unsigned long find(unsigned long below, const std::string& title) const;

  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> manager_;
  std::unique_ptr<Connection> connection_;
  std::string name_;
};

}  // namespace endtoend
