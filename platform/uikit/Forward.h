#pragma once

namespace platform {

class CALayer;
class CGContext;
class NSLayoutConstraint;
class NSLayoutDimension;
class NSLayoutXAxisAnchor;
class NSLayoutYAxisAnchor;
class UIApplication;
class UIBarButtonItem;
class UIControl;
class UIDevice;
class UIEvent;
class UIGestureRecognizer;
class UIImage;
class UILayoutGuide;
class UINavigationBar;
class UINavigationController;
class UINavigationItem;
class UIResponder;
class UIScreen;
class UISearchController;
class UIStoryboardSegue;
class UITabBar;
class UITabBarController;
class UITabBarItem;
class UIToolbar;
class UITouch;
class UIView;
class UIViewController;
class UIWindow;

}  // namespace platform
