#pragma once

#include <string>

#include "platform/uikit/views/UIView.h"

namespace platform {

class UILabel;

/// The view above or below the rows of a section. Made with `make<View>(identifier)`. Main thread.
class UITableViewHeaderFooterView : public Object<UITableViewHeaderFooterView, UIView> {
 public:
  void init() { initWithReuseIdentifier(""); }
  void init(const std::string& reuseIdentifier) { initWithReuseIdentifier(reuseIdentifier); }
  /// The designated initialiser: subclasses call the base first, then build their subviews.
  virtual void initWithReuseIdentifier(const std::string& reuseIdentifier);

  const std::string& reuseIdentifier() const { return reuseIdentifier_; }
  virtual void prepareForReuse() {}
  const Ref<UIView>& contentView() const { return contentView_; }
  const Ref<UILabel>& textLabel() const { return textLabel_; }

  CGSize sizeThatFits(CGSize size) const override;
  void layoutSubviews() override;

 private:
  friend class TableContent;
  enum class Role { plainHeader, groupedHeader, footer };
  void setRole(Role role, double margin);
  /// What a view of that role needs for a title, without making one.
  static double heightOf(const std::string& title, Role role, double margin, double width);

  std::string reuseIdentifier_;
  Ref<UIView> contentView_;
  Ref<UILabel> textLabel_;
  bool hasStandardGround_ = false;
  Role role_ = Role::plainHeader;
  double margin_ = 16;
};

}  // namespace platform
