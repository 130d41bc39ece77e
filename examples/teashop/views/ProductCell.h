#pragma once

#include "examples/teashop/model/Cart.h"
#include "examples/teashop/views/TeaCupView.h"
#include "platform/uikit/lists/UITableViewCell.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// One tea in a list: the cup, name and taste, and at the right the price or what is in the cart of it.
class ProductCell final : public platform::Object<ProductCell, platform::UITableViewCell> {
 public:
  static constexpr const char* reuseIdentifier = "ProductCell";
  void initWithStyle(platform::UITableViewCellStyle style, const std::string& reuse) override;
  /// As a tea of the shop; the cell is named "product-<id>".
  void showProduct(const Product& product);
  /// As what a search found; the cell is named "result-<id>".
  void showResult(const Product& product);
  /// As a line of the cart; the cell is named "cart-<id>".
  void showLine(const Cart::Line& line);

 private:
  void show(const Product& product, const std::string& detail, const std::string& price);
  platform::Ref<TeaCupView> cup_;
  platform::Ref<platform::UILabel> name_;
  platform::Ref<platform::UILabel> detail_;
  platform::Ref<platform::UILabel> price_;
};

}  // namespace teashop
