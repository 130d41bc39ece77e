#pragma once

#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor {

using namespace platform;

/// Puts the delegate proxies in front of a screen's search bars, text views, pickers and tab bar, and keeps the tables
/// of the façade that hold them. Main thread.
class LumicorProxyInstallation {
 public:
  /// For every such control of the screen: of its tree, of its navigation item, the pickers that are keyboards of its
  /// fields, and its tab bar controller. A control whose delegate the host set anew gets its proxy in front again.
  /// Nothing is loaded for it. The wheel inside a date picker is the platform's own and is left alone.
  static void installFor(UIViewController& screen);
  /// For the tree of one view, its own self included.
  static void installIn(const Ref<UIView>& view);
  /// From here on a field or text view that begins to be edited during a demonstration is looked after, whenever it
  /// came to the screen. Once in a process.
  static void watchEditing();
  /// The tables would keep controls for ever: those that nobody else holds any more are let go, and their proxies.
  static void forgetLostControls();
};

}  // namespace lumicor
