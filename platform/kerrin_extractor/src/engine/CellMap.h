// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellViews.h"

namespace kx {

/// How far outside of a cell, in reference coordinates, a point still counts as inside. Points on a face that two cells
/// share are in both.
inline constexpr double INSIDE_TOLERANCE = 1e-9;

/// The map from reference coordinates to space of a linear volume cell. All four shapes are cases of one polynomial,
/// a0 + a1 r + a2 s + a3 t + a4 rs + a5 st + a6 rt + a7 rst: a pyramid is a hexahedron whose upper corners coincide.
class CellMap {
public:
  CellMap() = default;
  CellMap(CellCode code, const std::array<KbVec3<double>, 8>& corners);

  /// Finds the reference coordinates of a point. True when it lies in the cell; inverted cells are fine.
  ///
  /// Newton's method from `position`; a linear system for tetrahedra. Where it fails or ends on another branch of the
  /// map (crumpled cells) the slow search of `invertShape` from many starts decides; flat cells hold no point.
  bool invert(const KbVec3<double>& point, KbVec3<double>& position) const;

  KbVec3<double> at(const KbVec3<double>& position) const;
  /// Shape functions, one for each corner.
  void getWeights(const KbVec3<double>& position, std::array<double, 8>& weights) const;
  /// A start for `invert`.
  KbVec3<double> centre() const;

private:
  enum class Answer { INSIDE, OUTSIDE, UNDECIDED };
  Answer solveTetrahedron(const KbVec3<double>& point, KbVec3<double>& position) const;
  Answer newton(const KbVec3<double>& point, KbVec3<double>& position) const;
  Answer newtonPyramid(const KbVec3<double>& point, KbVec3<double>& position) const;
  /// How far a position lies outside of the cell; not positive inside.
  double excess(const KbVec3<double>& position) const;

  CellCode m_code = UNREADABLE;
  std::array<KbVec3<double>, 8> m_a;
};

} // namespace kx
