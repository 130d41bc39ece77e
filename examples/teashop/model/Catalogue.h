#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace teashop {

/// Money in the shop's currency, in its smallest unit.
using Pence = std::int64_t;

/// "£12.50"
std::string priceText(Pence price);

enum class TeaKind { green, black, oolong, white, herbal };

inline constexpr TeaKind teaKinds[] = {TeaKind::green, TeaKind::black, TeaKind::oolong, TeaKind::white,
                                       TeaKind::herbal};

std::string_view kindName(TeaKind kind);

/// One tea of the shop. The identifier names it to code ("sencha"), the name to people ("Sencha Fukamushi").
struct Product {
  std::string id;
  std::string name;
  std::string origin;
  std::string taste;
  std::string description;
  TeaKind kind;
  Pence price;      ///< for a packet
  int grams;        ///< in a packet
  unsigned liquor;  ///< colour of the brewed cup, 0xRRGGBB
  int packetsLeft;  ///< of those delivered last
  int packetsDelivered;
  bool caffeineFree;
};

/// What the shop sells, in the order it is shown.
const std::vector<Product>& catalogue();

/// The product of that identifier, or none.
const Product* productWithId(std::string_view id);

}  // namespace teashop
