#include "platform/geometry/CGPath.h"

#include <numbers>

namespace platform {

void CGPath::move(CGPoint to) {
  elements_.push_back({Kind::move, {to, {}, {}}});
  subpathStart_ = to;
}

void CGPath::line(CGPoint to) {
  if (elements_.empty()) return move(to);
  if (elements_.back().kind == Kind::close) move(subpathStart_);
  elements_.push_back({Kind::line, {to, {}, {}}});
}

void CGPath::quad(CGPoint control, CGPoint to) {
  const CGPoint from = elements_.empty() ? control : currentPoint();
  // The cubic of the same shape has its control points two thirds of the way to the quadratic's only one.
  curve(from + (control - from) * (2.0 / 3), to + (control - to) * (2.0 / 3), to);
}

void CGPath::curve(CGPoint control1, CGPoint control2, CGPoint to) {
  if (elements_.empty()) move(control1);
  if (elements_.back().kind == Kind::close) move(subpathStart_);
  elements_.push_back({Kind::curve, {control1, control2, to}});
}

void CGPath::arc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise) {
  constexpr double turn = 2 * std::numbers::pi;
  if (!std::isfinite(startAngle) || !std::isfinite(endAngle) || !std::isfinite(radius)) return;
  double sweep = endAngle - startAngle;
  if (std::abs(sweep) >= turn) {
    sweep = clockwise ? turn : -turn;
  } else if (clockwise && sweep < 0) {
    sweep += turn;
  } else if (!clockwise && sweep > 0) {
    sweep -= turn;
  }
  radius = std::max(0.0, radius);
  const auto at = [&](double angle) {
    return CGPoint{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
  };
  const CGPoint start = at(startAngle);
  if (elements_.empty()) {
    move(start);
  } else if (!(currentPoint() == start)) {
    line(start);
  }
  if (radius == 0 || sweep == 0) return;
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (turn / 4) - 1e-9)));
  const double step = sweep / pieces;
  const double handle = 4.0 / 3 * std::tan(step / 4) * radius;
  for (int i = 0; i < pieces; ++i) {
    const double a = startAngle + step * i, b = startAngle + step * (i + 1);
    const CGPoint from = at(a), to = at(b);
    curve({from.x - handle * std::sin(a), from.y + handle * std::cos(a)},
          {to.x + handle * std::sin(b), to.y - handle * std::cos(b)}, to);
  }
}

void CGPath::close() {
  if (!elements_.empty() && elements_.back().kind != Kind::close) elements_.push_back({Kind::close, {}});
}

void CGPath::append(const CGPath& other) {
  elements_.insert(elements_.end(), other.elements_.begin(), other.elements_.end());
  if (!other.isEmpty()) subpathStart_ = other.subpathStart_;
}

CGPoint CGPath::currentPoint() const {
  if (elements_.empty()) return {};
  return elements_.back().kind == Kind::close ? subpathStart_ : elements_.back().end();
}

CGPath CGPath::applying(const CGAffineTransform& transform) const {
  CGPath result = *this;
  for (Element& element : result.elements_) {
    for (CGPoint& point : element.points) point = transform.apply(point);
  }
  result.subpathStart_ = transform.apply(subpathStart_);
  return result;
}

CGPath CGPath::blendedTo(const CGPath& other, double fraction) const {
  const bool alike = elements_.size() == other.elements_.size() &&
                     std::equal(elements_.begin(), elements_.end(), other.elements_.begin(),
                                [](const Element& a, const Element& b) { return a.kind == b.kind; });
  if (!alike) return fraction >= 1 ? other : *this;
  CGPath result = *this;
  const auto mix = [fraction](CGPoint a, CGPoint b) { return a + (b - a) * fraction; };
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    for (int p = 0; p < 3; ++p)
      result.elements_[i].points[p] = mix(elements_[i].points[p], other.elements_[i].points[p]);
  }
  result.subpathStart_ = mix(subpathStart_, other.subpathStart_);
  return result;
}

}  // namespace platform
