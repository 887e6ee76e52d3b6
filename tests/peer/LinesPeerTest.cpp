// SPDX-License-Identifier: BSD-3-Clause
// Isolines, clip lines, clip points and lines of real meshes against numbers that VTK computed from the same files.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>

namespace {

using namespace peer;

double length(const KeXLineMeshUnstructured& mesh) {
  double sum = 0.0;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiLineCell* cell = mesh.getTopology().getCell(c);
    sum += (mesh.getGeometry().getCoord(cell->getNodeIndex(1)) - mesh.getGeometry().getCoord(cell->getNodeIndex(0)))
               .length();
  }
  return sum;
}

/// Whether a face of a surface is not flat: it may then be cut along either diagonal or not at all.
bool hasWarpedFaces(const KiMesh& mesh) {
  if (dynamic_cast<const KiSurfaceMeshCurvilinear*>(&mesh)) return true;
  const auto& surface = dynamic_cast<const KiSurfaceMeshUnstructured&>(mesh);
  for (std::size_t c = 0; c < surface.getTopology().getNumCells(); ++c) {
    const KiSurfaceCell& cell = *surface.getTopology().getCell(c);
    std::vector<Vec3> corners;
    for (std::size_t n = 0; n < cell.getNumNodes(); ++n)
      corners.push_back(surface.getGeometry().getCoord(cell.getNodeIndex(n)));
    if (!isFlat(corners)) return true;
  }
  return false;
}

class SurfaceLines : public PeerTest<> {
protected:
  double toleranceOf(double length) const { return (hasWarpedFaces(*file.getMesh()) ? 1e-2 : 1e-4) * length; }
};
class LinePeer : public PeerTest<> {};

class SurfaceIsolines : public SurfaceLines {
protected:
  template <class Set, class Extractor, class Mesh>
  void expectLengths(const Mesh& mesh) {
    const Json& isolines = reference.at("isolines");
    const std::string name = isolines.at(0).at("scalar").get<std::string>();
    const NamedScalar<Mesh, Set> scalar(file, mesh, name);
    ASSERT_TRUE(scalar.get()) << name;
    std::vector<double> isovalues;
    for (const Json& line : isolines)
      isovalues.push_back(line.at("value").get<double>());
    const std::unique_ptr<Extractor> extractor(Extractor::getNewInstance(mesh, true));
    const auto& lines = extractor->extract(isovalues, *scalar.get(), nullptr);
    ASSERT_EQ(lines.size(), isovalues.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const double expected = isolines.at(i).at("length").get<double>();
      EXPECT_NEAR(length(*lines[i]), expected, toleranceOf(expected)) << name << " = " << isovalues[i];
    }
  }
};

TEST_P(SurfaceIsolines, HaveTheLength) {
  if (const auto* curvilinear = dynamic_cast<const KiSurfaceMeshCurvilinear*>(file.getMesh())) {
    expectLengths<KiDataSetIj<double>, KiIsolineExtractIj>(*curvilinear);
    return;
  }
  const auto* unstructured = dynamic_cast<const KiSurfaceMeshUnstructured*>(file.getMesh());
  ASSERT_TRUE(unstructured) << file.getMeshTypeName();
  expectLengths<KiDataSetI<double>, KiIsolineExtractUnstructured>(*unstructured);
}

TEST_P(SurfaceLines, PlanesCutTheLength) {
  const auto* unstructured = dynamic_cast<const KiSurfaceMeshUnstructured*>(file.getMesh());
  const auto* curvilinear = dynamic_cast<const KiSurfaceMeshCurvilinear*>(file.getMesh());
  ASSERT_TRUE(unstructured || curvilinear) << file.getMeshTypeName();
  const std::unique_ptr<KiClipLineExtractUnstructured> extractor(
      unstructured ? KiClipLineExtractUnstructured::getNewInstance(*unstructured, true, nullptr) : nullptr);
  const std::unique_ptr<KiClipLineExtractIj> extractorIj(
      curvilinear ? KiClipLineExtractIj::getNewInstance(*curvilinear, true, nullptr) : nullptr);
  for (const Json& cut : reference.at("plane_cuts")) {
    const Vec3 normal = vectorOf(cut.at("normal"));
    const double distance = normal.dot(vectorOf(cut.at("origin")));
    const double expected = cut.at("length").get<double>();
    const double ours = length(unstructured ? extractor->extract(normal, distance, nullptr)
                                            : extractorIj->extract(normal, distance, nullptr));
    EXPECT_NEAR(ours, expected, toleranceOf(expected)) << cut.at("plane");
  }
}

TEST_P(LinePeer, LengthAndCrossingsAreThoseOfTheFile) {
  const auto* mesh = dynamic_cast<const KiLineMeshUnstructured*>(file.getMesh());
  ASSERT_NE(mesh, nullptr) << file.getMeshTypeName();
  const std::unique_ptr<KiTessellatedLineExtract> whole(KiTessellatedLineExtract::getNewInstance(*mesh, true));
  const KeXLineMeshUnstructured& line = whole->extract(nullptr, nullptr);
  EXPECT_EQ(line.getTopology().getNumCells(), reference.at("segments").get<std::size_t>());
  const double expected = reference.at("length").get<double>();
  EXPECT_NEAR(length(line), expected, 1e-5 * expected);
  const std::unique_ptr<KiClipPointExtract> clip(KiClipPointExtract::getNewInstance(*mesh, true, nullptr));
  for (const Json& crossing : reference.at("plane_crossings")) {
    if (crossing.at("ends_on_the_plane").get<std::size_t>() > 0) continue; // what counts there is a matter of taste
    const Vec3 normal = vectorOf(crossing.at("normal"));
    const KeXPointMeshCurvilinear& points = clip->extract(normal, normal.dot(vectorOf(crossing.at("origin"))), nullptr);
    EXPECT_EQ(points.getTopology().getNumCells(), crossing.at("crossings").get<std::size_t>()) << crossing.at("plane");
  }
}

INSTANTIATE_TEST_SUITE_P(Files, SurfaceIsolines,
                         testing::Values("surf_blow.vtk", "surf_dfn.inp", "surf_estuary.vtk", "surf_fran.vtk",
                                         "surf_plate.vtk", "surf_shark.ply", "surf_spot_quad.obj", "surf_spot_tri.obj",
                                         "surf_sthelens.vtk"),
                         nameOf<const char*>);
INSTANTIATE_TEST_SUITE_P(Files, SurfaceLines,
                         testing::Values("surf_blow.vtk", "surf_dfn.inp", "surf_estuary.vtk", "surf_fran.vtk",
                                         "surf_plate.vtk", "surf_shark.ply", "surf_spot_quad.obj", "surf_spot_tri.obj",
                                         "surf_sthelens.vtk", "surf_ucd2d.inp", "surf_usa.vtk"),
                         nameOf<const char*>);
INSTANTIATE_TEST_SUITE_P(Files, LinePeer,
                         testing::Values("line_earth.vtp", "line_faults.vtk", "line_political.vtp", "line_track.vtk"),
                         nameOf<const char*>);

} // namespace
