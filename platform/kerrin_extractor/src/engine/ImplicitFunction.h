// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <array>
#include <cmath>
#include <limits>

namespace kx {

/// Bounds of a function over a box.
template <class T>
struct BoundsOf {
  T low;
  T high;
};
struct Bounds : BoundsOf<double> {
  bool hasZero() const { return low <= 0.0 && high >= 0.0; }
};

/// A function of space whose zero surface is a section: positive inside, so that normals point out.
class ImplicitFunction {
public:
  virtual ~ImplicitFunction() = default;
  virtual double operator()(const KbVec3<double>& point) const = 0;
  /// Bounds over the box between two corners; never too narrow.
  virtual Bounds boundsIn(const KbVec3<double>& low, const KbVec3<double>& high) const = 0;
  /// All that distinguishes this function from others of its class.
  virtual std::array<double, 7> parameters() const = 0;
  /// What is wrong with the parameters; null when nothing is.
  virtual const char* fault() const = 0;

protected:
  static bool isFinite(const KbVec3<double>& v) { return std::isfinite(v.dot(v)); }
  /// With room for the rounding of two ways to the same number.
  static Bounds widened(const BoundsOf<double>& bounds, double magnitude) {
    return {{bounds.low - 1e-12 * magnitude, bounds.high + 1e-12 * magnitude}};
  }
  template <class T>
  static T greater(T a, T b) {
    return a < b ? b : a;
  }
  template <class T>
  static T less(T a, T b) {
    return b < a ? b : a;
  }
};

/// A stretch of a line; empty when `begin` > `end`.
struct Stretch {
  static constexpr double ENDLESS = std::numeric_limits<double>::infinity();
  double begin = ENDLESS;
  double end = -ENDLESS;
};

/// A function that also offers, for loops over many boxes: `boundsOver(low, high)`, the bounds in `float` or `double`
/// but for the rounding, and `magnitude(low, high)`, the size of the terms in them, of which little may be left.
template <class Self>
class SpaceFunction : public ImplicitFunction {
public:
  Bounds boundsIn(const KbVec3<double>& low, const KbVec3<double>& high) const final {
    const auto& self = static_cast<const Self&>(*this);
    return widened(self.boundsOver(low, high), self.magnitude(low, high));
  }
};

} // namespace kx
