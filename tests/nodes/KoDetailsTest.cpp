// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/details/KoMeshDetail.h>

#include "nodes/NodesTestTools.h"
#include "nodes/TestSets.h"

#include <KerrinDataMapping/details/KoFaceDetailI.h>
#include <KerrinDataMapping/details/KoFaceDetailIj.h>
#include <KerrinDataMapping/details/KoFaceDetailIjk.h>
#include <KerrinDataMapping/details/KoLineDetailI.h>
#include <KerrinDataMapping/details/KoLineDetailIj.h>
#include <KerrinDataMapping/details/KoLineDetailIjk.h>
#include <KerrinDataMapping/details/KoLineMeshDetail.h>
#include <KerrinDataMapping/details/KoSurfaceMeshDetail.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>

#include <limits>
#include <memory>

namespace {

using KoDetailsTest = KoTest;
using Indices = std::vector<std::size_t>;
constexpr auto NONE = static_cast<std::size_t>(-1);

class ExtractedSet : public TestSetBase<KeXDataSetI<double>> {
public:
  explicit ExtractedSet(DataBinding where, std::vector<double> content)
      : values(std::move(content)) {
    binding = where;
  }
  std::vector<double> values;

  double getMin() const override { return 0.0; }
  double getMax() const override { return 0.0; }
  double getMean() const override { return 0.0; }
  double getStandardDeviation() const override { return 0.0; }
  const double* getValues() const override { return values.data(); }
  std::size_t getSize() const override { return values.size(); }
  double get(std::size_t i) const override { return values[i]; }
  ExtractedSet* getNewClone() const override { return new ExtractedSet(*this); }
};

/// An extracted surface of two triangles on the corners of the unit square, which tells the input cells that the test
/// gives it.
class ExtractedSurface : public KeXSurfaceMeshUnstructured {
public:
  class Topology : public KeXSurfaceTopologyExplicitI {
  public:
    std::vector<std::int32_t> nodes{0, 1, 2, 1, 3, 2};
    std::vector<float> coordinates{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};
    KbSurfaceMeshUnstructured source{coordinates, {KiSurfaceCell::TRIANGLE, nodes}};
    Indices i{10, 11}, j{NONE, NONE}, k{NONE, NONE};
    bool hasDead = false;

    std::size_t getTimeStamp() const override { return 1; }
    bool hasDeadCells() const override { return hasDead; }
    std::size_t getNumCells() const override { return 2; }
    std::size_t getEndNodeId() const override { return 4; }
    const KiSurfaceCell* getCell(std::size_t cell) const override { return source.getTopology().getCell(cell); }
    const KiBuffer* getIndexBuffer() const override { return nullptr; }
    bool hasStructuredInputCells() const override { return j[0] != NONE; }
    std::size_t getInputCellIndexI(std::size_t cell) const override { return i[cell]; }
    std::size_t getInputCellIndexJ(std::size_t cell) const override { return j[cell]; }
    std::size_t getInputCellIndexK(std::size_t cell) const override { return k[cell]; }
  };
  class Geometry : public KeXGeometryExplicit {
  public:
    explicit Geometry(const Topology& t)
        : topology(t) {}
    const Topology& topology;
    std::size_t getTimeStamp() const override { return 1; }
    KbVec3<double> getCoord(std::size_t node) const override { return topology.source.getGeometry().getCoord(node); }
    std::size_t getNumNodes() const override { return 4; }
    const KiBuffer* getVertexBuffer() const override { return nullptr; }
  };
  Topology topology;
  Geometry geometry{topology};
  const Topology& getTopology() const override { return topology; }
  const Geometry& getGeometry() const override { return geometry; }
  ExtractedSurface* getNewClone() const override { return nullptr; }
};

NxFaceDetail faceOf(int index) {
  NxFaceDetail face;
  face.setFaceIndex(index);
  return face;
}

TEST_F(KoDetailsTest, MeshDetailStartsEmpty) {
  const KoMeshDetail detail;
  EXPECT_EQ(detail.getMesh(), nullptr);
  EXPECT_EQ(detail.getMeshType(), UNDEFINED_MESH_TYPE);
  EXPECT_EQ(detail.getColorScalarSet(), nullptr);
  EXPECT_TRUE(detail.getColorScalarSets().empty());
}

TEST_F(KoDetailsTest, ListsOfNothingButNullsAreEmpty) {
  KoMeshDetail detail;
  const TestSetI<double> set;
  detail.setColorScalarSets({nullptr, &set});
  EXPECT_EQ(detail.getColorScalarSets().size(), 2U);
  EXPECT_EQ(detail.getColorScalarSet(), nullptr) << "the first of the list";
  detail.setColorScalarSets({nullptr, nullptr});
  EXPECT_TRUE(detail.getColorScalarSets().empty());
  EXPECT_EQ(detail.getColorScalarSet(), nullptr);
  EXPECT_TRUE(KoSurfaceMeshDetail(nullptr, {nullptr, nullptr}).getExtractedColorScalarSets().empty());
}

TEST_F(KoDetailsTest, FormFollowsTheMeshType) {
  const NxFaceDetail face = faceOf(1);
  const NxLineDetail line;
  const KoFaceDetail faceDetail(&face, nullptr, nullptr);
  const KoLineDetail lineDetail(&line, nullptr, nullptr);
  for (int type = 0; type <= 15; ++type) {
    const KoMeshDetail mesh(nullptr, static_cast<MeshType>(type));
    const std::unique_ptr<KoFaceDetail> f(mesh.specilizeFaceDetail(&faceDetail));
    const std::unique_ptr<KoLineDetail> l(mesh.specilizeLineDetail(&lineDetail));
    NxType expectedFace, expectedLine;
    if (type == 0 || type == 6 || (type >= 10 && type <= 12)) {
      expectedFace = KoFaceDetailI::getClassTypeId();
      expectedLine = KoLineDetailI::getClassTypeId();
    } else if (type >= 1 && type <= 5) {
      expectedFace = KoFaceDetailIjk::getClassTypeId();
      expectedLine = KoLineDetailIjk::getClassTypeId();
    } else if (type >= 7 && type <= 9) {
      expectedFace = KoFaceDetailIj::getClassTypeId();
      expectedLine = KoLineDetailIj::getClassTypeId();
    }
    EXPECT_EQ(f ? f->getTypeId() : NxType(), expectedFace) << type;
    EXPECT_EQ(l ? l->getTypeId() : NxType(), expectedLine) << type;
  }
}

TEST_F(KoDetailsTest, CellIndexComesFromTheExtractedMesh) {
  ExtractedSurface surface;
  const KoSurfaceMeshDetail extracted(&surface, {});
  const NxFaceDetail face = faceOf(1);
  const KoFaceDetail picked(&face, &extracted, nullptr);
  EXPECT_EQ(picked.getFaceIndex(), 1);
  EXPECT_EQ(picked.getMeshRepresentationDetail(), &extracted);
  const KoMeshDetail mesh(nullptr, VOLUME_UNSTRUCTURED);
  const KoFaceDetailI detail(picked, mesh);
  EXPECT_EQ(detail.getCellIndex(), 11U);
  EXPECT_EQ(detail.getMeshDetail().getMeshType(), VOLUME_UNSTRUCTURED);

  surface.topology.j = {20, 21};
  surface.topology.k = {30, 31};
  const KoFaceDetailIjk ijk(picked, KoMeshDetail(nullptr, VOLUME_REGULAR));
  EXPECT_EQ(ijk.getCellIndexI(), 11U);
  EXPECT_EQ(ijk.getCellIndexJ(), 21U);
  EXPECT_EQ(ijk.getCellIndexK(), 31U);
}

TEST_F(KoDetailsTest, FlatIndicesAreSplit) {
  ExtractedSurface surface;
  const KoSurfaceMeshDetail extracted(&surface, {});
  const NxFaceDetail face = faceOf(1);
  const KoFaceDetail picked(&face, &extracted, nullptr);
  const KbSurfaceMeshRegular ijMesh({4, 9}, {0, 0, 0}, {1, 1, 0});
  const KoFaceDetailIj ij(picked, KoMeshDetail(&ijMesh, SURFACE_REGULAR));
  EXPECT_EQ(ij.getCellIndexI(), 3U) << "11 = 3 + 4 * 2";
  EXPECT_EQ(ij.getCellIndexJ(), 2U);
  const KbVolumeMeshRegular ijkMesh({2, 3, 9}, {0, 0, 0}, {1, 1, 1});
  const KoFaceDetailIjk ijk(picked, KoMeshDetail(&ijkMesh, VOLUME_REGULAR));
  EXPECT_EQ(ijk.getCellIndexI(), 1U) << "11 = 1 + 2 * (2 + 3 * 1)";
  EXPECT_EQ(ijk.getCellIndexJ(), 2U);
  EXPECT_EQ(ijk.getCellIndexK(), 1U);
}

TEST_F(KoDetailsTest, WithoutAnExtractedMeshTheDrawnIndexCounts) {
  const NxFaceDetail face = faceOf(7);
  const KoFaceDetail picked(&face, nullptr, nullptr);
  EXPECT_EQ(KoFaceDetailI(picked, KoMeshDetail(nullptr, VOLUME_UNSTRUCTURED)).getCellIndex(), 7U);
  const KbVolumeMeshRegular mesh({2, 2, 2}, {0, 0, 0}, {1, 1, 1});
  const KoFaceDetailIjk ijk(picked, KoMeshDetail(&mesh, VOLUME_REGULAR));
  EXPECT_EQ((Indices{ijk.getCellIndexI(), ijk.getCellIndexJ(), ijk.getCellIndexK()}), (Indices{1, 1, 1}));
  const KoFaceDetailIjk unknown(picked, KoMeshDetail(nullptr, VOLUME_REGULAR));
  EXPECT_EQ((Indices{unknown.getCellIndexI(), unknown.getCellIndexJ(), unknown.getCellIndexK()}),
            (Indices{7, NONE, NONE}));
}

TEST_F(KoDetailsTest, DeadCellsAreCountedBackThroughTheMapping) {
  ExtractedSurface surface;
  surface.topology.hasDead = true;
  const KoSurfaceMeshDetail extracted(&surface, {});
  const NxFaceDetail face = faceOf(0);
  const Indices mapping{1};
  const KoFaceDetail picked(&face, &extracted, &mapping);
  EXPECT_EQ(KoFaceDetailI(picked, KoMeshDetail(nullptr, VOLUME_UNSTRUCTURED)).getCellIndex(), 11U);
}

TEST_F(KoDetailsTest, ValuesAreInterpolatedInTheCell) {
  ExtractedSurface surface;
  const ExtractedSet perNode(DataBinding::PER_NODE, {0, 10, 20, 30});
  const ExtractedSet perCell(DataBinding::PER_CELL, {100, 200});
  const KoSurfaceMeshDetail detail(&surface, {nullptr, &perNode, &perCell, &perNode});
  EXPECT_EQ(detail.getExtractedColorScalarSet(), nullptr) << "the first of the list";
  const std::vector<double> inside = detail.computeValues({0.25, 0.5, 0}, 0);
  ASSERT_EQ(inside.size(), 3U) << "a null set adds no value";
  EXPECT_NEAR(inside[0], 0.25 * 10 + 0.5 * 20, 1e-9);
  EXPECT_EQ(inside[1], 100);
  EXPECT_EQ(inside[2], inside[0]);
  EXPECT_EQ(detail.computeValues({5, 5, 0}, 1), (std::vector<double>{200})) << "outside the cell only its own value";
  EXPECT_EQ(detail.computeValues({0, 0, 0}, 99), std::vector<double>()) << "no such cell";

  const NxFaceDetail face = faceOf(1);
  const KoFaceDetail picked(&face, &detail, nullptr);
  EXPECT_NEAR(picked.getValue(NbVec3f(1, 1, 0)), 30, 1e-6);
  EXPECT_EQ(picked.getValues(NbVec3f(1, 1, 0)).size(), 3U);
}

TEST_F(KoDetailsTest, WithoutSetsTheValueIsTheGreatestDouble) {
  ExtractedSurface surface;
  const KoSurfaceMeshDetail noSets(&surface, {});
  const NxFaceDetail face = faceOf(0);
  EXPECT_EQ(KoFaceDetail(&face, &noSets, nullptr).getValue(NbVec3f(0, 0, 0)), 1.7976931348623157e+308);
  EXPECT_EQ(KoFaceDetail(&face, nullptr, nullptr).getValue(NbVec3f(0, 0, 0)), 1.7976931348623157e+308);
  EXPECT_TRUE(KoFaceDetail(&face, nullptr, nullptr).getValues(NbVec3f(0, 0, 0)).empty());
  EXPECT_TRUE(KoMeshRepresentationDetail().computeValues({0, 0, 0}, 0).empty());
}

TEST_F(KoDetailsTest, CopiesAreOfTheSameClassAndContent) {
  ExtractedSurface surface;
  const ExtractedSet set(DataBinding::PER_CELL, {1, 2});
  const KoSurfaceMeshDetail extracted(&surface, {&set});
  const NxFaceDetail face = faceOf(1);
  const KoFaceDetailI detail(KoFaceDetail(&face, &extracted, nullptr), KoMeshDetail(nullptr, VOLUME_UNSTRUCTURED));
  const std::unique_ptr<NxDetail> copy(detail.copy());
  ASSERT_EQ(copy->getTypeId(), KoFaceDetailI::getClassTypeId());
  EXPECT_EQ(static_cast<KoFaceDetailI&>(*copy).getCellIndex(), 11U);
  EXPECT_EQ(static_cast<KoFaceDetailI&>(*copy).getValue(NbVec3f(0, 0, 0)), 2);
  const std::unique_ptr<NxDetail> meshCopy(KoMeshDetail(nullptr, LINE_REGULAR).copy());
  EXPECT_EQ(static_cast<KoMeshDetail&>(*meshCopy).getMeshType(), LINE_REGULAR);
  const std::unique_ptr<NxDetail> lineCopy(KoLineMeshDetail().copy());
  EXPECT_EQ(lineCopy->getTypeId(), KoLineMeshDetail::getClassTypeId());
}

TEST(KoDetailClass, TheSurfaceDetailsSecondTypeStays) {
  KoKerrin::init();
  EXPECT_EQ(KoSurfaceMeshDetail::getClassTypeId(), NxType::fromName("KoSurfaceMeshDetail"));
  EXPECT_TRUE(KoSurfaceMeshDetail::getClassTypeId().isDerivedFrom(KoMeshRepresentationDetail::getClassTypeId()));
  KoKerrin::finish();
}

} // namespace
