#pragma once

#include <optional>

#include "platform/foundation/URL.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

class UILabel;

/// Stands for a web page: it holds the page's address and shows it. No page is fetched. Main thread.
class WKWebView : public Object<WKWebView, UIView> {
 public:
  void initWithFrame(CGRect frame) override;

  virtual std::optional<platform::URL> URL() const { return url_; }
  void loadURL(std::optional<platform::URL> url);
  void layoutSubviews() override;

 private:
  std::optional<platform::URL> url_;
  Ref<UIView> icon_;
  Ref<UILabel> address_;
};

}  // namespace platform
