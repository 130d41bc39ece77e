// What CGPath tells about its outline: bounds, inside, lengths and parts.

#include <array>
#include <functional>

#include "platform/geometry/CGPath.h"

namespace platform {

namespace {

using Cubic = std::array<CGPoint, 4>;

double distance(CGPoint a, CGPoint b) { return std::hypot(b.x - a.x, b.y - a.y); }

CGPoint pointAt(const Cubic& c, double t) {
  const double s = 1 - t;
  const double w0 = s * s * s, w1 = 3 * s * s * t, w2 = 3 * s * t * t, w3 = t * t * t;
  return {c[0].x * w0 + c[1].x * w1 + c[2].x * w2 + c[3].x * w3, c[0].y * w0 + c[1].y * w1 + c[2].y * w2 + c[3].y * w3};
}

/// The piece of a curve between two of its parameters.
Cubic partOf(const Cubic& c, double from, double to) {
  const auto derivative = [&](double t) {
    const double s = 1 - t;
    return (c[1] - c[0]) * (s * s) + (c[2] - c[1]) * (2 * s * t) + (c[3] - c[2]) * (t * t);
  };
  const CGPoint start = pointAt(c, from), end = pointAt(c, to);
  const double span = to - from;
  return {start, start + derivative(from) * span, end - derivative(to) * span, end};
}

/// The lengths of a curve up to evenly spaced parameters.
constexpr int steps = 32;
std::array<double, steps + 1> lengthsOf(const Cubic& c) {
  std::array<double, steps + 1> lengths{};
  CGPoint last = c[0];
  for (int i = 1; i <= steps; ++i) {
    const CGPoint next = pointAt(c, static_cast<double>(i) / steps);
    lengths[static_cast<std::size_t>(i)] = lengths[static_cast<std::size_t>(i - 1)] + distance(last, next);
    last = next;
  }
  return lengths;
}

double parameterAt(const std::array<double, steps + 1>& lengths, double length) {
  const auto after = std::upper_bound(lengths.begin(), lengths.end(), length);
  if (after == lengths.begin()) return 0;
  if (after == lengths.end()) return 1;
  const double low = *(after - 1);
  return (static_cast<double>(after - lengths.begin() - 1) + (length - low) / (*after - low)) / steps;
}

/// Walks a path piece by piece with each piece's start; a close is told as the line that it is.
struct Piece {
  CGPath::Kind kind;  // move, line or curve
  Cubic points;       // start at [0], end at [3]
  bool closes;
};
void forEachPiece(const CGPath& path, const std::function<void(const Piece&)>& visit) {
  CGPoint current, start;
  for (const CGPath::Element& e : path.elements()) {
    switch (e.kind) {
      case CGPath::Kind::move:
        start = e.points[0];
        visit({CGPath::Kind::move, {current, current, start, start}, false});
        break;
      case CGPath::Kind::line:
        visit({CGPath::Kind::line, {current, current, e.points[0], e.points[0]}, false});
        break;
      case CGPath::Kind::curve:
        visit({CGPath::Kind::curve, {current, e.points[0], e.points[1], e.points[2]}, false});
        break;
      case CGPath::Kind::close:
        visit({CGPath::Kind::line, {current, current, start, start}, true});
        break;
    }
    current = e.kind == CGPath::Kind::close ? start : e.end();
  }
}

double lengthOf(const Piece& piece) {
  if (piece.kind == CGPath::Kind::move) return 0;
  if (piece.kind == CGPath::Kind::line) return distance(piece.points[0], piece.points[3]);
  return lengthsOf(piece.points).back();
}

/// Where a coordinate of a curve turns round: the parameters at which its derivative is zero.
void addExtremes(double p0, double p1, double p2, double p3, std::vector<double>& parameters) {
  const double a = p3 - 3 * p2 + 3 * p1 - p0, b = 2 * (p2 - 2 * p1 + p0), c = p1 - p0;
  const auto add = [&](double t) {
    if (t > 0 && t < 1) parameters.push_back(t);
  };
  if (std::abs(a) < 1e-12) {
    if (b != 0) add(-c / b);
    return;
  }
  const double root = b * b - 4 * a * c;
  if (root < 0) return;
  add((-b + std::sqrt(root)) / (2 * a));
  add((-b - std::sqrt(root)) / (2 * a));
}

/// +1, -1 or 0: how a straight piece crosses the ray from the point to the right.
int crossing(CGPoint a, CGPoint b, CGPoint p) {
  if ((a.y <= p.y) == (b.y <= p.y)) return 0;
  const double x = a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x);
  if (x <= p.x) return 0;
  return b.y > a.y ? 1 : -1;
}

}  // namespace

CGRect CGPath::bounds() const {
  if (elements_.empty()) return {};
  CGPoint low{CGFloatMax, CGFloatMax}, high{-CGFloatMax, -CGFloatMax};
  const auto include = [&](CGPoint p) {
    low = {std::min(low.x, p.x), std::min(low.y, p.y)};
    high = {std::max(high.x, p.x), std::max(high.y, p.y)};
  };
  std::vector<double> extremes;
  forEachPiece(*this, [&](const Piece& piece) {
    include(piece.points[3]);
    if (piece.kind != Kind::curve) return;
    const Cubic& c = piece.points;
    extremes.clear();
    addExtremes(c[0].x, c[1].x, c[2].x, c[3].x, extremes);
    addExtremes(c[0].y, c[1].y, c[2].y, c[3].y, extremes);
    for (const double t : extremes) include(pointAt(c, t));
  });
  return {low.x, low.y, high.x - low.x, high.y - low.y};
}

bool CGPath::contains(CGPoint point, bool evenOdd) const {
  int winding = 0, crossings = 0;
  const auto cross = [&](CGPoint a, CGPoint b) {
    const int side = crossing(a, b, point);
    winding += side;
    crossings += side != 0;
  };
  CGPoint start, current;
  forEachPiece(*this, [&](const Piece& piece) {
    if (piece.kind == Kind::move) {
      cross(current, start);  // an open subpath counts as closed
      start = piece.points[3];
    } else if (piece.kind == Kind::line) {
      cross(piece.points[0], piece.points[3]);
    } else {
      CGPoint last = piece.points[0];
      for (int i = 1; i <= steps; ++i) {
        const CGPoint next = i == steps ? piece.points[3] : pointAt(piece.points, static_cast<double>(i) / steps);
        cross(last, next);
        last = next;
      }
    }
    current = piece.points[3];
  });
  cross(current, start);
  return evenOdd ? crossings % 2 != 0 : winding != 0;
}

double CGPath::length() const {
  double total = 0;
  forEachPiece(*this, [&](const Piece& piece) { total += lengthOf(piece); });
  return total;
}

CGPath CGPath::trimmed(double start, double end) const {
  start = std::clamp(start, 0.0, 1.0);
  end = std::clamp(end, 0.0, 1.0);
  if (start == 0 && end == 1) return *this;
  CGPath result;
  if (!(start < end)) return result;
  const double total = length();
  const double from = start * total, to = end * total;
  double walked = 0;
  bool connected = false;  // the result's current point is where the next piece starts
  forEachPiece(*this, [&](const Piece& piece) {
    if (piece.kind == Kind::move) {
      connected = false;
      return;
    }
    const double length = lengthOf(piece);
    const double first = std::max(from - walked, 0.0), last = std::min(to - walked, length);
    walked += length;
    if (first >= last) {
      connected = false;
      return;
    }
    Cubic part = piece.points;
    if (piece.kind == Kind::curve) {
      const auto lengths = lengthsOf(piece.points);
      part = partOf(piece.points, parameterAt(lengths, first), parameterAt(lengths, last));
    } else {
      const CGPoint way = piece.points[3] - piece.points[0];
      part[0] = piece.points[0] + way * (first / length);
      part[3] = piece.points[0] + way * (last / length);
    }
    if (!connected) result.move(part[0]);
    piece.kind == Kind::curve ? result.curve(part[1], part[2], part[3]) : result.line(part[3]);
    connected = true;
  });
  return result;
}

}  // namespace platform
