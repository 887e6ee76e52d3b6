// SPDX-License-Identifier: BSD-3-Clause
// The kinds that are no member of a family of three.
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <KerrinExtractor/KiMessage.h>

namespace {

/// Posts that arrays of other sizes can't replace those of a mesh; false.
bool refuseOtherSize(const std::string& origin, const std::string& sizes) {
  KiMessage::postWarning(origin, sizes + " don't suit the cells that the mesh has");
  return false;
}

} // namespace

KbVolumeMeshRectilinear::KbVolumeMeshRectilinear(const KbArray& x, const KbArray& y, const KbArray& z,
                                                 const KbSpan<std::uint8_t>& dead)
    : KbMesh("KbVolumeMeshRectilinear") {
  if (!m_geometry.setAxes(x, y, z)) return;
  m_topology.setCounts(m_geometry.getNumCells());
  setDeadOrClear(dead);
}

bool KbVolumeMeshRectilinear::setAxes(const KbArray& x, const KbArray& y, const KbArray& z) {
  const KbIndex<3>& counts = m_topology.getCounts();
  if (x.isReal() && y.isReal() && z.isReal() && x.size() == counts[0] + 1 && y.size() == counts[1] + 1 &&
      z.size() == counts[2] + 1)
    return m_geometry.setAxes(x, y, z);
  return refuseOtherSize("KbVolumeMeshRectilinear::setAxes", std::to_string(x.size()) + ", " +
                                                                 std::to_string(y.size()) + " and " +
                                                                 std::to_string(z.size()) + " positions");
}

KbSurfaceMeshRectilinear::KbSurfaceMeshRectilinear(const KbArray& x, const KbArray& y, double distance,
                                                   const KbSpan<std::uint8_t>& dead)
    : KbMesh("KbSurfaceMeshRectilinear") {
  if (!m_geometry.setAxes(x, y, distance)) return;
  m_topology.setCounts(m_geometry.getNumCells());
  setDeadOrClear(dead);
}

bool KbSurfaceMeshRectilinear::setAxes(const KbArray& x, const KbArray& y, double distance) {
  const KbIndex<2>& counts = m_topology.getCounts();
  if (x.isReal() && y.isReal() && x.size() == counts[0] + 1 && y.size() == counts[1] + 1)
    return m_geometry.setAxes(x, y, distance);
  return refuseOtherSize("KbSurfaceMeshRectilinear::setAxes",
                         std::to_string(x.size()) + " and " + std::to_string(y.size()) + " positions");
}

KbVolumeMeshHexahedronIjk::KbVolumeMeshHexahedronIjk(const KbIndex<3>& numCells, const KbArray& coordinates,
                                                     const KbArray& connectivity, const KbSpan<std::uint8_t>& dead)
    : KbNodeMesh("KbVolumeMeshHexahedronIjk") {
  if (m_geometry.setCoordinates(coordinates, {coordinates.size() / 3}) &&
      m_topology.setCells(numCells, connectivity, m_geometry.getNumNodes()))
    setDeadOrClear(dead);
}

KbVolumeMeshVertexHexahedronIjk::KbVolumeMeshVertexHexahedronIjk(const KbIndex<3>& numCells, const KbArray& coord,
                                                                 const KbArray& zcorn, const KbSpan<std::uint8_t>& dead)
    : KbMesh("KbVolumeMeshVertexHexahedronIjk") {
  if (!m_geometry.setPillars(numCells, coord, zcorn)) return;
  m_topology.setCounts(numCells);
  setDeadOrClear(dead);
}

bool KbVolumeMeshVertexHexahedronIjk::setPillars(const KbArray& coord, const KbArray& zcorn) {
  const KbIndex<3>& counts = m_topology.getCounts();
  if (coord.isReal() && zcorn.isReal() && coord.size() == 6 * (counts[0] + 1) * (counts[1] + 1) &&
      zcorn.size() == 8 * KbProduct(counts))
    return m_geometry.setPillars(counts, coord, zcorn);
  return refuseOtherSize("KbVolumeMeshVertexHexahedronIjk::setPillars",
                         std::to_string(coord.size()) + " pillar coordinates and " + std::to_string(zcorn.size()) +
                             " corner depths");
}
