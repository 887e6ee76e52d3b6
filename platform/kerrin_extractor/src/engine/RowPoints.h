// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PointView.h"

namespace kx {

// Points by (i, j, k), and the next one along an axis from a point `p` that is known.

struct AxesPoints {
  const double* axes[3];
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const { return {axes[0][i], axes[1][j], axes[2][k]}; }
  template <std::size_t AXIS>
  KbVec3<double> next(KbVec3<double> p, std::size_t i, std::size_t j, std::size_t k) const {
    p[AXIS] = axes[AXIS][(AXIS == 0 ? i : AXIS == 1 ? j : k) + 1];
    return p;
  }
};

/// Where every point is read by itself.
template <class Self>
struct SinglePoints {
  template <std::size_t AXIS>
  KbVec3<double> next(const KbVec3<double>&, std::size_t i, std::size_t j, std::size_t k) const {
    return static_cast<const Self&>(*this).at(i + (AXIS == 0), j + (AXIS == 1), k + (AXIS == 2));
  }
};

template <class T>
struct ArrayPoints : SinglePoints<ArrayPoints<T>> {
  const T* coordinates;
  Dims nodes;
  explicit ArrayPoints(const PointView& view)
      : coordinates(static_cast<const T*>(view.array))
      , nodes(view.nodes) {}
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const {
    const T* p = coordinates + 3 * nodes.flat(i, j, k);
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }
};

struct GeometryPoints : SinglePoints<GeometryPoints> {
  const KiGeometryIjk* geometry;
  explicit GeometryPoints(const PointView& view)
      : geometry(view.geometryIjk) {}
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const { return geometry->getCoord(i, j, k); }
};

/// Calls `visit` with the points of a view of a grid.
template <class Visit>
void withPoints(const PointView& view, Visit&& visit) {
  switch (view.kind) {
  case PointView::Kind::AXES:
    visit(AxesPoints{{view.axes[0].data(), view.axes[1].data(), view.axes[2].data()}});
    break;
  case PointView::Kind::FLOATS:
    visit(ArrayPoints<float>(view));
    break;
  case PointView::Kind::DOUBLES:
    visit(ArrayPoints<double>(view));
    break;
  default:
    visit(GeometryPoints(view));
    break;
  }
}

} // namespace kx
