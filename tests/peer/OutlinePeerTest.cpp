// SPDX-License-Identifier: BSD-3-Clause
// Outlines of real surfaces against the open, branching and sharp edges that VTK counted.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiOutlineExtractIj.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

namespace {

using namespace peer;

using Place = std::tuple<double, double, double>;
using Edge = std::pair<Place, Place>;

Edge edgeOf(const Vec3& a, const Vec3& b) {
  const Place p{a[0], a[1], a[2]};
  const Place q{b[0], b[1], b[2]};
  return p < q ? Edge(p, q) : Edge(q, p);
}

/// A surface whose nodes at one place are one node, as the reference counts.
struct Merged {
  explicit Merged(const KiSurfaceMeshUnstructured& mesh) {
    std::map<Place, std::int64_t> ids;
    for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
      const KiSurfaceCell& cell = *mesh.getTopology().getCell(c);
      shapes.push_back(static_cast<std::uint8_t>(cell.getShape()));
      for (std::size_t n = 0; n < cell.getNumNodes(); ++n) {
        const Vec3 p = mesh.getGeometry().getCoord(cell.getNodeIndex(n));
        const auto [entry, isNew] = ids.try_emplace({p[0], p[1], p[2]}, static_cast<std::int64_t>(ids.size()));
        if (isNew) coordinates.insert(coordinates.end(), {p[0], p[1], p[2]});
        connectivity.push_back(entry->second);
      }
      offsets.push_back(static_cast<std::int64_t>(connectivity.size()));
    }
    surface = std::make_unique<KbSurfaceMeshUnstructured>(coordinates, KbCells(shapes, connectivity, offsets));
  }
  std::vector<double> coordinates;
  std::vector<std::uint8_t> shapes;
  std::vector<std::int64_t> connectivity;
  std::vector<std::int64_t> offsets{0};
  std::unique_ptr<KbSurfaceMeshUnstructured> surface;
};

/// The faces at each edge.
class FaceCounts {
public:
  explicit FaceCounts(const KiSurfaceMeshUnstructured& mesh) {
    for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
      const KiSurfaceCell& cell = *mesh.getTopology().getCell(c);
      std::vector<Vec3> corners;
      for (std::size_t n = 0; n < cell.getNumNodes(); ++n)
        corners.push_back(mesh.getGeometry().getCoord(cell.getNodeIndex(n)));
      addFace(corners);
    }
  }
  explicit FaceCounts(const KiSurfaceMeshCurvilinear& mesh) {
    for (std::size_t j = 0; j < mesh.getTopology().getNumCellsJ(); ++j)
      for (std::size_t i = 0; i < mesh.getTopology().getNumCellsI(); ++i)
        addFace({mesh.getGeometry().getCoord(i, j), mesh.getGeometry().getCoord(i + 1, j),
                 mesh.getGeometry().getCoord(i + 1, j + 1), mesh.getGeometry().getCoord(i, j + 1)});
  }
  int at(const Edge& edge) const { return m_counts.at(edge); }

private:
  /// Outputs hold floats.
  static Vec3 rounded(const Vec3& p) { return Vec3(KbVec3<float>(p)); }
  void addFace(const std::vector<Vec3>& corners) {
    for (std::size_t n = 0; n < corners.size(); ++n)
      ++m_counts[edgeOf(rounded(corners[n]), rounded(corners[(n + 1) % corners.size()]))];
  }
  std::map<Edge, int> m_counts;
};

struct Row {
  const char* file;
  double freedom = 0.0;     ///< of the edges, where faces are not flat: what is sharp depends on their normals
  std::size_t numFolds = 0; ///< pairs of faces on the same side of an edge, which the reference takes for flat
};
std::string fileOf(const Row& row) { return row.file; }

class OutlinePeer : public PeerTest<Row> {
protected:
  void expectEdges(const KeXLineMeshUnstructured& lines, const FaceCounts& faces) const {
    struct Sum {
      std::size_t edges = 0;
      double length = 0.0;
    };
    Sum all;
    Sum open;
    Sum branching;
    for (std::size_t c = 0; c < lines.getTopology().getNumCells(); ++c) {
      const KiLineCell& cell = *lines.getTopology().getCell(c);
      const Vec3 a = lines.getGeometry().getCoord(cell.getNodeIndex(0));
      const Vec3 b = lines.getGeometry().getCoord(cell.getNodeIndex(1));
      const int numFaces = faces.at(edgeOf(a, b));
      for (Sum* sum : {&all, numFaces == 1 ? &open : numFaces > 2 ? &branching : nullptr}) {
        if (!sum) continue;
        ++sum->edges;
        sum->length += (b - a).length();
      }
    }
    const Json& edges = reference["edges"];
    const auto expectSum = [&](const Sum& sum, const char* kind) {
      const double length = edges[kind]["length"];
      EXPECT_EQ(sum.edges, edges[kind]["edges"].get<std::size_t>()) << kind;
      EXPECT_NEAR(sum.length, length, 1e-4 * length) << kind;
    };
    expectSum(open, "open");
    expectSum(branching, "non_manifold");
    std::size_t expected = GetParam().numFolds;
    double expectedLength = 0.0;
    for (const Json& kind : edges) {
      expected += kind["edges"].get<std::size_t>();
      expectedLength += kind["length"].get<double>();
    }
    EXPECT_NEAR(static_cast<double>(all.edges), static_cast<double>(expected),
                GetParam().freedom * static_cast<double>(expected));
    EXPECT_NEAR(all.length, expectedLength, std::max(GetParam().freedom, 1e-3) * expectedLength);
  }
};

TEST_P(OutlinePeer, HasTheEdgesOfTheReference) {
  if (const auto* curvilinear = dynamic_cast<const KiSurfaceMeshCurvilinear*>(file.getMesh())) {
    const std::unique_ptr<KiOutlineExtractIj> outline(KiOutlineExtractIj::getNewInstance(*curvilinear, true, nullptr));
    expectEdges(outline->extract(nullptr), FaceCounts(*curvilinear));
    return;
  }
  const auto* unstructured = dynamic_cast<const KiSurfaceMeshUnstructured*>(file.getMesh());
  ASSERT_TRUE(unstructured) << file.getMeshTypeName();
  const Merged merged(*unstructured);
  const std::unique_ptr<KiOutlineExtractUnstructured> outline(
      KiOutlineExtractUnstructured::getNewInstance(*merged.surface, true, nullptr));
  expectEdges(outline->extract(nullptr), FaceCounts(*unstructured));
}

// Without surf_usa.vtk, a flat map: the reference calls edges sharp between polygons of which one is turned over.
INSTANTIATE_TEST_SUITE_P(Surfaces, OutlinePeer,
                         testing::Values(Row{"surf_blow.vtk"}, Row{"surf_dfn.inp"}, Row{"surf_estuary.vtk"},
                                         Row{"surf_fran.vtk"}, Row{"surf_plate.vtk"}, Row{"surf_shark.ply", 0.02},
                                         Row{"surf_spot_quad.obj"}, Row{"surf_spot_tri.obj"}, Row{"surf_sthelens.vtk"},
                                         Row{"surf_ucd2d.inp", 0.0, 2}),
                         nameOf<Row>);

} // namespace
