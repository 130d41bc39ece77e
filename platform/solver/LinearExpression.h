#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace platform {

/// An unknown of a LayoutSolver, a cheap handle. Made by LayoutSolver::addVariable and good for that solver alone.
struct LayoutVariable {
  static constexpr std::uint32_t none = 0xffffffff;
  std::uint32_t index = none;
  explicit operator bool() const { return index != none; }
  friend bool operator==(LayoutVariable, LayoutVariable) = default;
};

struct LinearTerm {
  LayoutVariable variable;
  double coefficient = 1;
};

/// Terms in the order they were added. A few fit without an allocation, which is all that most constraints have.
class LinearTerms {
 public:
  LinearTerms() = default;
  LinearTerms(std::initializer_list<LinearTerm> list) {
    for (const LinearTerm& term : list) push_back(term);
  }
  void push_back(const LinearTerm& term) {
    if (count_ < few_.size()) {
      few_[count_] = term;
    } else {
      if (count_ == few_.size()) many_.assign(few_.begin(), few_.end());
      many_.push_back(term);
    }
    ++count_;
  }
  std::size_t size() const { return count_; }
  const LinearTerm* begin() const { return many_.empty() ? few_.data() : many_.data(); }
  const LinearTerm* end() const { return begin() + count_; }

 private:
  std::size_t count_ = 0;
  std::array<LinearTerm, 5> few_;
  std::vector<LinearTerm> many_;
};

/// A sum of terms and a constant: `left + width * 0.5 + 8`. A variable may occur in several terms.
struct LinearExpression {
  LinearTerms terms;
  double constant = 0;

  LinearExpression() = default;
  LinearExpression(double value) : constant(value) {}
  LinearExpression(LayoutVariable variable) { terms.push_back({variable, 1}); }
  LinearExpression(std::initializer_list<LinearTerm> list, double value = 0) : terms(list), constant(value) {}

  void add(const LinearExpression& other, double factor = 1) {
    for (const LinearTerm& term : other.terms) terms.push_back({term.variable, term.coefficient * factor});
    constant += other.constant * factor;
  }
};

inline LinearExpression operator+(LinearExpression a, const LinearExpression& b) { return a.add(b), a; }
inline LinearExpression operator-(LinearExpression a, const LinearExpression& b) { return a.add(b, -1), a; }
inline LinearExpression operator*(const LinearExpression& a, double factor) {
  LinearExpression product;
  product.add(a, factor);
  return product;
}

/// How the two sides of a constraint compare; the numbers are those of the constraint interface.
enum class NSLayoutRelation { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };

/// `expression relation 0`, with a priority: 1000 and above must hold, anything below yields to what is above it.
struct LinearConstraint {
  LinearExpression expression;
  NSLayoutRelation relation = NSLayoutRelation::equal;
  double priority = 1000;
};

inline LinearConstraint operator==(const LinearExpression& a, const LinearExpression& b) {
  return {a - b, NSLayoutRelation::equal};
}
inline LinearConstraint operator<=(const LinearExpression& a, const LinearExpression& b) {
  return {a - b, NSLayoutRelation::lessThanOrEqual};
}
inline LinearConstraint operator>=(const LinearExpression& a, const LinearExpression& b) {
  return {a - b, NSLayoutRelation::greaterThanOrEqual};
}
/// `(x == y) | 750` is the same constraint at that priority.
inline LinearConstraint operator|(LinearConstraint constraint, double priority) {
  constraint.priority = priority;
  return constraint;
}

}  // namespace platform
