#include "examples/teashop/model/Cart.h"

#include <algorithm>
#include <numeric>

namespace teashop {

void Cart::add(const Product& product, std::int64_t quantity) {
  const auto line =
      std::find_if(lines_.begin(), lines_.end(), [&](const Line& each) { return each.product == &product; });
  setQuantity(product, (line == lines_.end() ? 0 : line->quantity) + quantity);
}

void Cart::setQuantity(const Product& product, std::int64_t quantity) {
  quantity = std::min(quantity, maximumOfOne);
  const auto line =
      std::find_if(lines_.begin(), lines_.end(), [&](const Line& each) { return each.product == &product; });
  if (line == lines_.end()) {
    if (quantity <= 0) return;
    lines_.push_back({&product, quantity});
  } else if (quantity <= 0) {
    lines_.erase(line);
  } else {
    line->quantity = quantity;
  }
  changed();
}

void Cart::clear() {
  lines_.clear();
  changed();
}

std::int64_t Cart::count() const {
  return std::accumulate(lines_.begin(), lines_.end(), std::int64_t{0},
                         [](std::int64_t sum, const Line& line) { return sum + line.quantity; });
}

Pence Cart::total() const {
  return std::accumulate(lines_.begin(), lines_.end(), Pence{0},
                         [](Pence sum, const Line& line) { return sum + line.product->price * line.quantity; });
}

void Cart::changed() {
  for (const auto& observer : observers_) observer();
}

const Order& OrderBook::place(const Cart& cart, Delivery delivery) {
  const Pence total = cart.total() + (delivery.isGift ? giftWrapPrice : 0);
  orders_.push_back({nextNumber_++, cart.lines(), total, std::move(delivery)});
  return orders_.back();
}

}  // namespace teashop
