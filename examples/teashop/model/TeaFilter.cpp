#include "examples/teashop/model/TeaFilter.h"

#include <algorithm>

namespace teashop {

namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool TeaFilter::lets(const Product& product) const {
  if (kind && product.kind != *kind) return false;
  if (caffeineFree && !product.caffeineFree) return false;
  if (inStock && product.packetsLeft == 0) return false;
  return product.price <= mostPrice;
}

std::string TeaFilter::inWords() const {
  std::string words = kind ? std::string(kindName(*kind)) + " teas" : "Teas";
  if (mostPrice < highestPrice) words += " up to " + priceText(mostPrice);
  if (caffeineFree) words += ", without caffeine";
  if (inStock) words += ", in stock";
  return words;
}

std::vector<TeaShelf> shelves(const TeaFilter& filter) {
  std::vector<TeaShelf> found;
  for (const TeaKind kind : teaKinds) {
    TeaShelf shelf{kind, {}};
    for (const Product& product : catalogue()) {
      if (product.kind == kind && filter.lets(product)) shelf.teas.push_back(&product);
    }
    if (!shelf.teas.empty()) found.push_back(std::move(shelf));
  }
  return found;
}

std::size_t teaCount(const std::vector<TeaShelf>& shelves) {
  std::size_t count = 0;
  for (const TeaShelf& shelf : shelves) count += shelf.teas.size();
  return count;
}

std::vector<const Product*> teasFoundBy(const std::string& words) {
  std::vector<const Product*> found;
  for (const Product& product : catalogue()) {
    const std::string text =
        product.name + ' ' + std::string(kindName(product.kind)) + ' ' + product.taste + ' ' + product.origin;
    if (holdsWords(text, words)) found.push_back(&product);
  }
  return found;
}

bool holdsWords(std::string_view text, std::string_view words) {
  const auto isSame = [](char a, char b) { return lower(a) == lower(b); };
  return words.empty() || std::search(text.begin(), text.end(), words.begin(), words.end(), isSame) != text.end();
}

}  // namespace teashop
