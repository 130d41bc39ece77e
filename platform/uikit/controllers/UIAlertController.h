#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/controllers/UIViewController.h"

namespace platform {

enum class UIAlertActionStyle { plain, cancel, destructive };

/// One button of an alert. The handler runs once the alert has gone. Main thread.
class UIAlertAction : public Object<UIAlertAction, NSObject> {
 public:
  using Handler = std::function<void()>;
  UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler = nullptr);

  const std::string& title() const { return title_; }
  UIAlertActionStyle style() const { return style_; }
  const Handler& handler() const { return handler_; }

 private:
  std::string title_;
  UIAlertActionStyle style_;
  Handler handler_;
};

/// A question in the middle of the screen, over a dimmed background. Presented like any controller; every button
/// dismisses it. Main thread.
class UIAlertController : public Object<UIAlertController, UIViewController> {
 public:
  UIAlertController();
  ~UIAlertController() override;
  static void exportMethods(MethodTable<UIAlertController>& table);
  void init(const std::string& title, const std::optional<std::string>& message);

  const std::optional<std::string>& message() const { return message_; }
  /// Before it is presented. Two stand side by side, more below each other, a cancelling one last.
  void addAction(const Ref<UIAlertAction>& action);
  const std::vector<Ref<UIAlertAction>>& actions() const { return actions_; }

  void viewDidLoad() override;
  void viewDidLayoutSubviews() override;

 private:
  void buttonTapped(Ref<NSObject> sender);
  std::optional<std::string> message_;
  std::vector<Ref<UIAlertAction>> actions_;
  Ref<UIView> panel_;
  Ref<UIView> titleLabel_;
  Ref<UIView> messageLabel_;
  std::vector<Ref<UIView>> buttons_;
  std::vector<Ref<UIView>> lines_;
};

}  // namespace platform
