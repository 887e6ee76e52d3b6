// SPDX-License-Identifier: BSD-3-Clause
#include "SkinFaces.h"

#include "CellGeometry.h"
#include "PolygonWriter.h"

#include <utility>

namespace kx {
namespace {

class Reader {
public:
  Reader(const MeshView& mesh, std::shared_ptr<const FaceList> faces, Faults& faults)
      : m_mesh(mesh)
      , m_faces(std::move(faces))
      , m_faults(faults) {}

  bool read(std::size_t number, FaceNodes& face) {
    const FaceRef ref = (*m_faces)[number];
    face.cell = ref.cell;
    face.corners.clear();
    face.middles.clear();
    const bool isForm = m_form.loadVolume(m_mesh, ref.cell);
    if (isForm) {
      readForm(ref.face, face);
    } else {
      if (!m_mesh.loadPolyhedron(ref.cell, m_polyhedron, m_nodes) || ref.face >= m_polyhedron.size()) return false;
      for (const std::size_t local : m_polyhedron[ref.face])
        face.corners.push_back(m_nodes[local]);
    }
    if (!areUsable(face.corners, ref.cell) || !areUsable(face.middles, ref.cell)) return false;
    if (!clean(face)) return false;
    if (isForm &&
        !areUsable({m_form.nodes.begin(), m_form.nodes.begin() + static_cast<std::ptrdiff_t>(m_form.numCorners)},
                   ref.cell))
      return false;
    face.isReversed = isForm ? isFormInverted() : isPolyhedronInverted(ref.cell);
    return true;
  }

private:
  void readForm(std::size_t number, FaceNodes& face) {
    const CellFace& corners = CELL_FACES[code()].faces[number];
    for (std::size_t c = 0; c < corners.numCorners; ++c)
      face.corners.push_back(m_form.nodes[corners.corners[c]]);
    if (!m_form.isQuadratic()) return;
    for (std::size_t c = 0; c < corners.numCorners; ++c)
      face.middles.push_back(
          m_form.nodes[m_form.numCorners +
                       m_form.edgeBetween(corners.corners[c], corners.corners[(c + 1) % corners.numCorners])]);
  }
  std::size_t code() const {
    return static_cast<std::size_t>((static_cast<int>(m_form.shape) - static_cast<int>(ReferenceShape::TETRAHEDRON)) %
                                    4);
  }
  /// Takes doubled corners out, with the middles between them; false when less than a triangle is left.
  static bool clean(FaceNodes& face) {
    for (std::size_t c = 0; c < face.corners.size() && face.corners.size() > 1;) {
      if (face.corners[c] != face.corners[c + 1 < face.corners.size() ? c + 1 : 0]) {
        ++c;
        continue;
      }
      face.corners.erase(face.corners.begin() + static_cast<std::ptrdiff_t>(c));
      if (!face.middles.empty()) face.middles.erase(face.middles.begin() + static_cast<std::ptrdiff_t>(c));
    }
    const std::vector<std::size_t>& ids = face.corners;
    return ids.size() == 3 || (ids.size() == 4 && ids[0] != ids[2] && ids[1] != ids[3]) || ids.size() > 4;
  }
  bool areUsable(const std::vector<std::size_t>& nodes, std::size_t cell) {
    for (const std::size_t node : nodes) {
      if (!m_mesh.hasNode(node)) {
        m_faults.add(Faults::NODE_OUT_OF_RANGE, cell);
        return false;
      }
      if (!isFinite(m_mesh.points[node])) {
        m_faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        return false;
      }
    }
    return true;
  }
  bool isFormInverted() const {
    std::array<KbVec3<double>, 8> corners;
    for (std::size_t c = 0; c < m_form.numCorners; ++c)
      corners[c] = m_mesh.points[m_form.nodes[c]];
    return signedSize(static_cast<CellCode>(code()), corners) < 0.0;
  }
  bool isPolyhedronInverted(std::size_t cell) {
    if (!areUsable(m_nodes, cell)) return false;
    const KbVec3<double> origin = m_mesh.points[m_nodes[0]];
    const auto at = [&](std::size_t local) { return m_mesh.points[m_nodes[local]] - origin; };
    double size = 0.0; // six times the volume within the fans of the faces
    for (const std::vector<std::size_t>& face : m_polyhedron)
      for (std::size_t i = 1; i + 1 < face.size(); ++i)
        size += at(face[0]).dot(at(face[i]).cross(at(face[i + 1])));
    return size < 0.0;
  }

  const MeshView& m_mesh;
  std::shared_ptr<const FaceList> m_faces;
  Faults& m_faults;
  CellForm m_form;
  std::vector<std::vector<std::size_t>> m_polyhedron;
  std::vector<std::size_t> m_nodes;
};

} // namespace

FaceSource skinFaces(const MeshView& mesh, std::shared_ptr<const FaceList> faces, Faults& faults) {
  const std::size_t numFaces = faces->size();
  return {numFaces, [&mesh, faces = std::move(faces), &faults]() -> FaceSource::Reader {
            return [reader = std::make_shared<Reader>(mesh, faces, faults)](std::size_t number, FaceNodes& face) {
              return reader->read(number, face);
            };
          }};
}

} // namespace kx
