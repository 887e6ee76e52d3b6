// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinMesh/KbGeometryHexahedronIjk.h>
#include <KerrinMesh/KbGeometryRegular.h>
#include <KerrinMesh/KbSurfaceGeometryRectilinear.h>
#include <KerrinMesh/KbVolumeGeometryRectilinear.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

namespace {

std::size_t cellsBetween(const KbArray& positions) { return positions.empty() ? 0 : positions.size() - 1; }

bool isAxis(const KbArray& positions) { return positions.isReal() && !positions.empty(); }

/// Least and greatest position along one axis.
void spanOf(const KbArray& positions, double& min, double& max) {
  min = std::numeric_limits<double>::infinity();
  max = -min;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    min = std::min(min, positions.value(i));
    max = std::max(max, positions.value(i));
  }
}

} // namespace

bool KbGeometryRegular::setBox(const KbVec3<double>& min, const KbVec3<double>& max, bool flat) {
  bool finite = true;
  for (std::size_t axis = 0; axis < 3; ++axis)
    finite = finite && std::isfinite(min[axis]) && std::isfinite(max[axis]);
  const bool hasVolume = min[0] != max[0] && min[1] != max[1] && min[2] != max[2];
  if (!finite || (flat && hasVolume)) {
    std::ostringstream text;
    text << "corners (" << min << ") and (" << max << ")" << (finite ? " differ along all axes" : " are not finite");
    return refuse("setBox", text.str());
  }
  m_min = min;
  m_max = max;
  touch();
  return true;
}

bool KbVolumeGeometryRectilinear::setAxes(const KbArray& x, const KbArray& y, const KbArray& z) {
  const bool right = isAxis(x) && isAxis(y) && isAxis(z);
  m_x = right ? x : KbArray();
  m_y = right ? y : KbArray();
  m_z = right ? z : KbArray();
  touch();
  return right || refuse("setAxes", "each axis needs float or double positions, at least one; there are " +
                                        std::to_string(x.size()) + ", " + std::to_string(y.size()) + " and " +
                                        std::to_string(z.size()));
}

KbIndex<3> KbVolumeGeometryRectilinear::getNumCells() const {
  return {cellsBetween(m_x), cellsBetween(m_y), cellsBetween(m_z)};
}

KbGeometryState::Box KbVolumeGeometryRectilinear::box() const {
  return m_box.get(m_stamp, [this] {
    Box box;
    spanOf(m_x, box.min[0], box.max[0]);
    spanOf(m_y, box.min[1], box.max[1]);
    spanOf(m_z, box.min[2], box.max[2]);
    return box;
  });
}

bool KbSurfaceGeometryRectilinear::setAxes(const KbArray& x, const KbArray& y, double distance) {
  const bool right = isAxis(x) && isAxis(y) && std::isfinite(distance);
  m_x = right ? x : KbArray();
  m_y = right ? y : KbArray();
  m_distance = right ? distance : 0.0;
  touch();
  return right || refuse("setAxes", "each axis needs float or double positions, at least one, and the distance must be "
                                    "finite; there are " +
                                        std::to_string(x.size()) + " and " + std::to_string(y.size()) +
                                        ", at distance " + std::to_string(distance));
}

KbIndex<2> KbSurfaceGeometryRectilinear::getNumCells() const { return {cellsBetween(m_x), cellsBetween(m_y)}; }

KbGeometryState::Box KbSurfaceGeometryRectilinear::box() const {
  return m_box.get(m_stamp, [this] {
    Box box;
    spanOf(m_x, box.min[0], box.max[0]);
    spanOf(m_y, box.min[1], box.max[1]);
    box.min[2] = box.max[2] = m_distance;
    return box;
  });
}

bool KbGeometryHexahedronIjk::setPillars(const KbIndex<3>& counts, const KbArray& coord, const KbArray& zcorn) {
  const std::size_t numPillars = KbProduct<2>({counts[0] + 1, counts[1] + 1});
  const std::size_t numCells = KbProduct(counts);
  const bool areReal = coord.isReal() && (zcorn.isReal() || zcorn.size() == 0); // empty arrays have no type
  const bool right = areReal && coord.size() % 6 == 0 && coord.size() / 6 == numPillars && zcorn.size() % 8 == 0 &&
                     zcorn.size() / 8 == numCells;
  m_counts = right ? counts : KbIndex<3>{};
  m_coord = right ? coord : KbArray();
  m_zcorn = right ? zcorn : KbArray();
  touch();
  return right || refuse("setPillars", "coord must have 6 float or double numbers for each of " +
                                           std::to_string(numPillars) + " pillars and has " +
                                           std::to_string(coord.size()) + "; zcorn must have 8 for each of " +
                                           std::to_string(numCells) + " cells and has " + std::to_string(zcorn.size()));
}

KbVec3<double> KbGeometryHexahedronIjk::pointOnPillar(std::size_t pillar, double z) const {
  const KbVec3<double> a = m_coord.triple(2 * pillar);
  const KbVec3<double> b = m_coord.triple(2 * pillar + 1);
  // A pillar whose ends have the same z can only be taken as vertical.
  const double t = a[2] == b[2] ? 0.0 : (z - a[2]) / (b[2] - a[2]);
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), z};
}

void KbGeometryHexahedronIjk::getCellCorners(std::size_t i, std::size_t j, std::size_t k,
                                             KbVec3<double> corners[8]) const {
  if (i >= m_counts[0] || j >= m_counts[1] || k >= m_counts[2]) {
    std::fill_n(corners, 8, KbVec3<double>(std::numeric_limits<double>::quiet_NaN()));
    return;
  }
  static constexpr std::size_t offset[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  for (std::size_t c = 0; c < 8; ++c) {
    const std::size_t di = offset[c % 4][0];
    const std::size_t dj = offset[c % 4][1];
    const std::size_t pillar = (j + dj) * (m_counts[0] + 1) + i + di;
    const std::size_t z = ((2 * k + c / 4) * 2 * m_counts[1] + 2 * j + dj) * 2 * m_counts[0] + 2 * i + di;
    corners[c] = pointOnPillar(pillar, m_zcorn.value(z));
  }
}

KbGeometryState::Box KbGeometryHexahedronIjk::box() const {
  return m_box.get(m_stamp, [this] {
    Box box = boxOf({});
    KbVec3<double> corners[8];
    for (std::size_t k = 0; k < m_counts[2]; ++k) {
      for (std::size_t j = 0; j < m_counts[1]; ++j) {
        for (std::size_t i = 0; i < m_counts[0]; ++i) {
          getCellCorners(i, j, k, corners);
          for (const KbVec3<double>& corner : corners) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
              box.min[axis] = corner[axis] < box.min[axis] ? corner[axis] : box.min[axis];
              box.max[axis] = corner[axis] > box.max[axis] ? corner[axis] : box.max[axis];
            }
          }
        }
      }
    }
    return box;
  });
}
