#include "XDesktop.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <poll.h>

namespace endtoend {

namespace {

constexpr auto patience = std::chrono::seconds(30);
constexpr int betweenLooks = 10;  // milliseconds

[[noreturn]] void giveUp(const std::string& why) {
  std::fprintf(stderr, "the desktop: %s\n", why.c_str());
  std::_Exit(1);
}

int passOver(Display*, XErrorEvent*) { return 0; }

}  // namespace

bool eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    ::poll(nullptr, 0, betweenLooks);
  }
  return true;
}

struct XDesktop::Connection {
  explicit Connection(const std::string& name) : display(XOpenDisplay(name.c_str())) {
    if (!display) giveUp("no connection to " + name);
    root = DefaultRootWindow(display);
    XSetErrorHandler(&passOver);
  }
  ~Connection() { XCloseDisplay(display); }
  Atom atom(const char* name) const { return XInternAtom(display, name, False); }
  bool isManaged() const {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, root, atom("_NET_SUPPORTING_WM_CHECK"), 0, 1, False, AnyPropertyType, &type, &format,
                       &count, &rest, &value);
    if (value) XFree(value);
    return count > 0;
  }

  Display* display;
  Window root = 0;
  Window window = 0;
};

XDesktop::XDesktop(const std::filesystem::path& folder, Manager manager) {
  server_ = std::make_unique<ChildProcess>(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                                    "1280x1024x24", "-nolisten", "tcp", "-noreset"});
  const std::string number = server_->readLine();
  if (number.empty()) giveUp("Xvfb did not start");
  name_ = ":" + number;
  ChildProcess layout({"setxkbmap", "-display", name_, "-layout", "us", "-variant", "intl", "-option", "compose:menu"});
  if (layout.wait() != 0) giveUp("the keyboard's layout could not be set");
  connection_ = std::make_unique<Connection>(name_);
  if (manager == Manager::none) return;
  const std::filesystem::path settings = folder / "jwmrc";
  std::ofstream(settings) << "<?xml version=\"1.0\"?><JWM><FocusModel>click</FocusModel></JWM>\n";
  manager_ = std::make_unique<ChildProcess>(std::vector<std::string>{"jwm", "-display", name_, "-f", settings});
  if (!eventually([this] { return connection_->isManaged(); })) giveUp("the window manager did not start");
}

XDesktop::~XDesktop() = default;

// ---- Windows

unsigned long XDesktop::find(unsigned long below, const std::string& title) const {
  Display* const display = connection_->display;
  char* name = nullptr;
  XWindowAttributes attributes;
  const bool isNamed = XFetchName(display, below, &name) && name && name == title;
  if (name) XFree(name);
  if (isNamed && XGetWindowAttributes(display, below, &attributes) && attributes.map_state == IsViewable) return below;
  Window root = 0, parent = 0, *children = nullptr;
  unsigned count = 0;
  if (!XQueryTree(display, below, &root, &parent, &children, &count)) return 0;
  Window found = 0;
  for (unsigned i = 0; i < count && !found; ++i) found = find(children[i], title);
  if (children) XFree(children);
  return found;
}

bool XDesktop::findWindow(const std::string& title) {
  return (connection_->window = find(connection_->root, title)) != 0;
}

platform::CGRect XDesktop::frame() const {
  XWindowAttributes attributes{};
  int x = 0, y = 0;
  Window child = 0;
  XGetWindowAttributes(connection_->display, connection_->window, &attributes);
  XTranslateCoordinates(connection_->display, connection_->window, connection_->root, 0, 0, &x, &y, &child);
  return {double(x), double(y), double(attributes.width), double(attributes.height)};
}

bool XDesktop::isVisible() const {
  XWindowAttributes attributes{};
  return XGetWindowAttributes(connection_->display, connection_->window, &attributes) &&
         attributes.map_state == IsViewable;
}

platform::Bitmap XDesktop::picture() const {
  const platform::CGRect place = frame().intersection({0, 0, 1280, 1024});
  platform::Bitmap bitmap(static_cast<int>(place.width()), static_cast<int>(place.height()));
  XImage* const image =
      XGetImage(connection_->display, connection_->root, static_cast<int>(place.minX()), static_cast<int>(place.minY()),
                static_cast<unsigned>(bitmap.width()), static_cast<unsigned>(bitmap.height()), AllPlanes, ZPixmap);
  if (!image) return {};
  for (int y = 0; y < bitmap.height(); ++y) {
    for (int x = 0; x < bitmap.width(); ++x) {
      bitmap.row(y)[x] = 0xFF000000u | static_cast<std::uint32_t>(XGetPixel(image, x, y) & 0xFFFFFFu);
    }
  }
  XDestroyImage(image);
  return bitmap;
}

void XDesktop::move(int dx, int dy) {
  const platform::CGRect now = frame();
  XMoveWindow(connection_->display, connection_->window, static_cast<int>(now.minX()) + dx,
              static_cast<int>(now.minY()) + dy);
  XFlush(connection_->display);
}

void XDesktop::resize(int width, int height) {
  XMoveResizeWindow(connection_->display, connection_->window, 0, 0, static_cast<unsigned>(width),
                    static_cast<unsigned>(height));
  XFlush(connection_->display);
}

void XDesktop::minimise() {
  XIconifyWindow(connection_->display, connection_->window, DefaultScreen(connection_->display));
  XFlush(connection_->display);
}

void XDesktop::restore() {
  XMapWindow(connection_->display, connection_->window);
  XFlush(connection_->display);
}

void XDesktop::close() {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = connection_->window;
  event.xclient.message_type = connection_->atom("_NET_CLOSE_WINDOW");
  event.xclient.format = 32;
  XSendEvent(connection_->display, connection_->root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
  XFlush(connection_->display);
}

// ---- Hands

void XDesktop::point(platform::CGPoint inWindow) {
  const platform::CGRect now = frame();
  XTestFakeMotionEvent(connection_->display, -1, static_cast<int>(now.minX() + inWindow.x),
                       static_cast<int>(now.minY() + inWindow.y), CurrentTime);
  XFlush(connection_->display);
}

void XDesktop::press() {
  XTestFakeButtonEvent(connection_->display, 1, True, CurrentTime);
  XFlush(connection_->display);
}

void XDesktop::release() {
  XTestFakeButtonEvent(connection_->display, 1, False, CurrentTime);
  XFlush(connection_->display);
}

void XDesktop::tap(platform::CGPoint inWindow) {
  point(inWindow);
  press();
  release();
}

void XDesktop::scrollUp(platform::CGPoint inWindow) {
  constexpr unsigned wheelUp = 4;
  point(inWindow);
  XTestFakeButtonEvent(connection_->display, wheelUp, True, CurrentTime);
  XTestFakeButtonEvent(connection_->display, wheelUp, False, CurrentTime);
  XFlush(connection_->display);
}

void XDesktop::key(const std::string& symbol) {
  Display* const display = connection_->display;
  const KeySym wanted = XStringToKeysym(symbol.c_str());
  const KeyCode code = XKeysymToKeycode(display, wanted);
  const KeyCode shift = XKeysymToKeycode(display, XStringToKeysym("Shift_L"));
  const bool isShifted = XkbKeycodeToKeysym(display, code, 0, 0) != wanted;
  if (code == 0 || (isShifted && XkbKeycodeToKeysym(display, code, 0, 1) != wanted)) giveUp("no key for " + symbol);
  if (isShifted) XTestFakeKeyEvent(display, shift, True, CurrentTime);
  XTestFakeKeyEvent(display, code, True, CurrentTime);
  XTestFakeKeyEvent(display, code, False, CurrentTime);
  if (isShifted) XTestFakeKeyEvent(display, shift, False, CurrentTime);
  XFlush(display);
}

void XDesktop::endServer() {
  connection_.reset();
  server_->send(SIGKILL);
  server_->wait();
}

}  // namespace endtoend
