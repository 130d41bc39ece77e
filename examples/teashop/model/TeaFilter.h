#pragma once

#include <optional>
#include <string>
#include <vector>

#include "examples/teashop/model/Catalogue.h"

namespace teashop {

/// Which teas a customer wants to see. A value.
struct TeaFilter {
  static constexpr Pence highestPrice = 2000;

  std::optional<TeaKind> kind;
  Pence mostPrice = highestPrice;
  bool caffeineFree = false;
  bool inStock = false;

  bool isOn() const { return *this != TeaFilter(); }
  bool lets(const Product& product) const;
  /// "Green teas up to £10.00, without caffeine"
  std::string inWords() const;

  friend bool operator==(const TeaFilter&, const TeaFilter&) = default;
};

/// The teas of the catalogue that the filter lets through, by kind, in the order of the kinds; kinds without any are
/// left out.
struct TeaShelf {
  TeaKind kind;
  std::vector<const Product*> teas;
};
std::vector<TeaShelf> shelves(const TeaFilter& filter);
std::size_t teaCount(const std::vector<TeaShelf>& shelves);

/// Teas whose name, kind, taste or origin holds the words, whatever their case; all of them for none.
std::vector<const Product*> teasFoundBy(const std::string& words);

/// Whether a text holds the words, whatever the case of their letters (A to Z).
bool holdsWords(std::string_view text, std::string_view words);

}  // namespace teashop
