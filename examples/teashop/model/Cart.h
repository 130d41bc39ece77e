#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "examples/teashop/model/Catalogue.h"

namespace teashop {

/// What the customer means to buy. Main thread.
class Cart {
 public:
  struct Line {
    const Product* product;
    std::int64_t quantity;
  };
  static constexpr std::int64_t maximumOfOne = 20;

  /// Adds to the product's line, or makes one. The line never holds more than `maximumOfOne`.
  void add(const Product& product, std::int64_t quantity);
  /// A quantity of zero or less removes the line.
  void setQuantity(const Product& product, std::int64_t quantity);
  void clear();

  const std::vector<Line>& lines() const { return lines_; }
  bool isEmpty() const { return lines_.empty(); }
  std::int64_t count() const;
  Pence total() const;

  /// Told after every change. Observers live as long as the shop.
  void observe(std::function<void()> observer) { observers_.push_back(std::move(observer)); }

 private:
  void changed();
  std::vector<Line> lines_;
  std::vector<std::function<void()>> observers_;
};

/// Where an order goes.
struct Delivery {
  std::string name;
  std::string street;
  std::string city;
  std::string date = {};   ///< "2030-12-24", empty for as soon as possible
  std::string slot = {};   ///< "Afternoon, ring the bell", empty for any time
  std::string notes = {};  ///< for whoever brings it
  bool isGift = false;     ///< wrapped as a present
};

inline constexpr Pence giftWrapPrice = 250;

struct Order {
  std::int64_t number;
  std::vector<Cart::Line> lines;
  Pence total;
  Delivery delivery;
};

/// The orders that were placed, newest last. Main thread.
class OrderBook {
 public:
  const Order& place(const Cart& cart, Delivery delivery);
  const std::vector<Order>& orders() const { return orders_; }

 private:
  std::vector<Order> orders_;
  std::int64_t nextNumber_ = 1042;
};

}  // namespace teashop
