// SPDX-License-Identifier: BSD-3-Clause
// What the families promise that pick faces of a volume mesh, cut it by a fence or a grid, or show a surface mesh: on
// every kind of mesh that they serve.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtract.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractCurvilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractRectilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractRegular.h>
#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>

#include <tbb/global_control.h>

#include <memory>

namespace {

using namespace pick;

/// Whatever has no parameters but the filter.
template <class K, class E>
struct SkinOf {
  using Kind = K;
  using Extractor = E;
  static Extractor* make(const Kind& kind, bool parallel) {
    return Extractor::getNewInstance(kind.mesh, parallel, nullptr);
  }
  static const KeXSurfaceMeshUnstructured& extract(Extractor& e, const typename K::CellForm::Filter* filter) {
    return e.extract(filter);
  }
};

template <class K, class E>
struct LogicalSliceOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const KiCellFilterIjk* filter) {
    return e.extract(KiMesh::DIMENSION_K, 1, true, filter);
  }
};
template <class K, class E>
struct InterpolatedSliceOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const KiCellFilterIjk* filter) {
    return e.extract(KiMesh::DIMENSION_J, 1.375, filter);
  }
};
template <class K, class E>
struct FenceOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.1, 0.2, 1.0}, {{0.1, 0.2, 0.0}, {0.8, 0.3, 0.5}, {0.4, 0.9, 0.0}}, filter);
  }
};
template <class K, class E>
struct GridPlaneOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.1, 0.2, 1.0}, 0.5, 0.07, filter);
  }
};

template <class K>
struct ElevatedOf {
  using Kind = K;
  using Extractor = KxElevatedSurfaceExtractUnstructured;
  static Extractor* make(const Kind& kind, bool parallel) { return new Extractor(kind.mesh, parallel); }
  /// Not raised, so that vertices stay at the nodes.
  static const KeXSurfaceMeshUnstructured& extract(Extractor& e, const KiCellFilterI* filter) {
    return e.extract(1.0, nullptr, filter);
  }
};

template <class Family>
class PickContract : public testing::Test {
protected:
  using Kind = typename Family::Kind;
  using Extractor = typename Family::Extractor;
  using CellForm = typename Kind::CellForm;
  using NodeForm = typename Kind::NodeForm;
  static std::unique_ptr<Extractor> make(const Kind& kind, bool parallel = false) {
    return std::unique_ptr<Extractor>(Family::make(kind, parallel));
  }
  static std::vector<std::size_t> evenCells(const Kind& kind) {
    std::vector<std::size_t> cells;
    for (std::size_t c = 0; c < kind.flat.size(); c += 2)
      cells.push_back(c);
    return cells;
  }
};

using Families = testing::Types<
    SkinOf<Unstructured, KiSkinExtractUnstructured>, SkinOf<HexahedronIjk, KiSkinExtractHexahedronIjk>,
    SkinOf<VertexHexahedronIjk, KiSkinExtractIjk>, SkinOf<Regular, KiSkinExtractIjk>,
    SkinOf<Rectilinear, KiSkinExtractIjk>, SkinOf<Curvilinear, KiSkinExtractIjk>,
    LogicalSliceOf<HexahedronIjk, KiLogicalSliceExtractHexahedronIjk>,
    LogicalSliceOf<Regular, KiLogicalSliceExtractRegular>,
    LogicalSliceOf<Rectilinear, KiLogicalSliceExtractRectilinear>,
    LogicalSliceOf<Curvilinear, KiLogicalSliceExtractCurvilinear>,
    InterpolatedSliceOf<HexahedronIjk, KiInterpolatedLogicalSliceExtractHexahedronIjk>,
    InterpolatedSliceOf<Regular, KiInterpolatedLogicalSliceExtract>,
    InterpolatedSliceOf<Rectilinear, KiInterpolatedLogicalSliceExtract>,
    InterpolatedSliceOf<Curvilinear, KiInterpolatedLogicalSliceExtract>,
    FenceOf<Unstructured, KiFenceSliceExtractUnstructured>, FenceOf<HexahedronIjk, KiFenceSliceExtractHexahedronIjk>,
    FenceOf<VertexHexahedronIjk, KiFenceSliceExtractIjk>, FenceOf<Regular, KiFenceSliceExtractIjk>,
    FenceOf<Rectilinear, KiFenceSliceExtractIjk>, FenceOf<Curvilinear, KiFenceSliceExtractIjk>,
    GridPlaneOf<Unstructured, KiGridPlaneSliceExtractUnstructured>,
    GridPlaneOf<HexahedronIjk, KiGridPlaneSliceExtractHexahedronIjk>, GridPlaneOf<Regular, KiGridPlaneSliceExtractIjk>,
    GridPlaneOf<Rectilinear, KiGridPlaneSliceExtractIjk>, GridPlaneOf<Curvilinear, KiGridPlaneSliceExtractIjk>,
    SkinOf<SurfaceUnstructured, KiSurfaceExtractUnstructured>, SkinOf<SurfaceRegular, KiSurfaceExtractIj>,
    SkinOf<SurfaceRectilinear, KiSurfaceExtractIj>, SkinOf<SurfaceCurvilinear, KiSurfaceExtractIj>,
    ElevatedOf<SurfaceUnstructured>>;
TYPED_TEST_SUITE(PickContract, Families);

TYPED_TEST(PickContract, GivesNothingForAMeshWithoutLivingCells) {
  const typename TypeParam::Kind kind({2, 2, 2}, std::vector<std::uint8_t>(8, 1));
  const auto e = this->make(kind);
  const auto& mesh = TypeParam::extract(*e, nullptr);
  EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
  EXPECT_EQ(mesh.getGeometry().getNumNodes(), 0u);
  EXPECT_EQ(mesh.getTopology().getIndexBuffer()->getByteSize(), 0u);
  EXPECT_EQ(mesh.getGeometry().getVertexBuffer()->getByteSize(), 0u);
}

TYPED_TEST(PickContract, EqualCallsDoNothing) {
  const typename TypeParam::Kind kind({3, 3, 3});
  const auto e = this->make(kind);
  Recorder recorder;
  e->setExtractorCallback(recorder);
  const auto& mesh = TypeParam::extract(*e, nullptr);
  EXPECT_EQ(recorder.changes, (std::array{true, true, false}));
  const std::size_t geometryStamp = mesh.getGeometry().getTimeStamp();
  const std::size_t topologyStamp = mesh.getTopology().getTimeStamp();
  recorder.reset();
  EXPECT_EQ(&TypeParam::extract(*e, nullptr), &mesh);
  EXPECT_EQ(&e->getExtract(), &mesh);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(recorder.changes, (std::array{false, false, false}));
  EXPECT_EQ(recorder.numPhases, 0u);
  EXPECT_EQ(mesh.getGeometry().getTimeStamp(), geometryStamp);
  EXPECT_EQ(mesh.getTopology().getTimeStamp(), topologyStamp);
}

TYPED_TEST(PickContract, PhasesNestAndAreAnnounced) {
  const typename TypeParam::Kind kind({3, 3, 3});
  const auto e = this->make(kind);
  Recorder recorder;
  e->setExtractorCallback(recorder);
  TypeParam::extract(*e, nullptr);
  std::string expected = "B";
  for (std::size_t p = 0; p < recorder.numPhases; ++p)
    expected += "Pp";
  EXPECT_EQ(recorder.withoutSteps(), expected + "e");
  EXPECT_EQ(recorder.numEmptyPhases, 0u);
}

TYPED_TEST(PickContract, StopsAtEachQuestionAndStaysUsable) {
  const typename TypeParam::Kind kind({3, 3, 3});
  const auto reference = this->make(kind);
  const std::string expected = bytesOf(TypeParam::extract(*reference, nullptr));
  Recorder recorder;
  const auto e = this->make(kind);
  e->setExtractorCallback(recorder);
  TypeParam::extract(*e, nullptr);
  const std::size_t numQuestions = recorder.questions;
  ASSERT_GT(numQuestions, 0u);
  for (std::size_t q = 0; q < numQuestions; ++q) {
    const auto fresh = this->make(kind);
    recorder.reset();
    recorder.stopAt = q;
    fresh->setExtractorCallback(recorder);
    EXPECT_THROW(TypeParam::extract(*fresh, nullptr), KiCancellationException) << q;
    EXPECT_EQ(recorder.calls.back(), 'e');
    EXPECT_EQ(fresh->getExtract().getTopology().getNumCells(), 0u);
    recorder.stopAt = static_cast<std::size_t>(-1);
    EXPECT_EQ(bytesOf(TypeParam::extract(*fresh, nullptr)), expected);
  }
}

TYPED_TEST(PickContract, ParallelEqualsSerial) {
  std::vector<std::uint8_t> dead(30 * 24 * 20, 0);
  for (std::size_t c = 0; c < dead.size(); ++c)
    dead[c] = c * 2654435761u % 7 == 0;
  const typename TypeParam::Kind kind({30, 24, 20}, dead);
  const auto serial = this->make(kind);
  const std::string expected = bytesOf(TypeParam::extract(*serial, nullptr));
  EXPECT_GT(expected.size(), 1000u);
  for (const std::size_t threads : {1u, 2u, 4u}) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    const auto e = this->make(kind, true);
    EXPECT_EQ(bytesOf(TypeParam::extract(*e, nullptr)), expected) << threads;
  }
}

TYPED_TEST(PickContract, DeadAndRefusedCellsAreTheSame) {
  std::vector<std::uint8_t> dead(5 * 3 * 3, 0);
  for (std::size_t c = 1; c < dead.size(); c += 2)
    dead[c] = 1;
  const typename TypeParam::Kind deadKind({5, 3, 3}, dead);
  const typename TypeParam::Kind liveKind({5, 3, 3});
  const auto filter = TestFixture::CellForm::filter(this->evenCells(liveKind), liveKind.counts);
  const auto a = this->make(deadKind);
  const auto b = this->make(liveKind);
  const std::string whole = bytesOf(TypeParam::extract(*b, nullptr));
  const std::string half = bytesOf(TypeParam::extract(*b, &filter));
  EXPECT_EQ(bytesOf(TypeParam::extract(*a, nullptr)), half);
  EXPECT_NE(half, whole);
  for (std::size_t c = 0; c < b->getExtract().getTopology().getNumCells(); ++c)
    EXPECT_EQ(inputCell(b->getExtract(), c, liveKind.counts) % 2, 0u);
  EXPECT_EQ(bytesOf(TypeParam::extract(*b, nullptr)), whole);
}

TYPED_TEST(PickContract, MapsSetsOfNodesAndCells) {
  const typename TypeParam::Kind kind({4, 3, 2});
  const auto e = this->make(kind);
  const auto& mesh = TypeParam::extract(*e, nullptr);
  const auto nodeSet = TestFixture::NodeForm::set("nodes", DataBinding::PER_NODE, kind.arrays.values, kind.nodes());
  const auto cellSet = TestFixture::CellForm::set("cells", DataBinding::PER_CELL, kind.flat, kind.counts);
  const auto vectorSet = TestFixture::NodeForm::vectors(DataBinding::PER_NODE, kind.arrays.coordinates, kind.nodes());

  const KeXDataSetI<double>* nodes = e->extractScalarSet(nodeSet);
  ASSERT_NE(nodes, nullptr);
  EXPECT_EQ(nodes->getBinding(), DataBinding::PER_NODE);
  EXPECT_EQ(nodes->getName(), "nodes");
  ASSERT_EQ(nodes->getSize(), mesh.getGeometry().getNumNodes());
  for (std::size_t v = 0; v < nodes->getSize(); ++v)
    EXPECT_NEAR(nodes->get(v), linear(mesh.getGeometry().getCoord(v)), 2e-6);

  const KeXDataSetI<double>* cells = e->extractScalarSet(cellSet);
  ASSERT_NE(cells, nullptr);
  EXPECT_EQ(cells->getBinding(), DataBinding::PER_CELL);
  ASSERT_EQ(cells->getSize(), mesh.getTopology().getNumCells());
  for (std::size_t c = 0; c < cells->getSize(); ++c)
    EXPECT_EQ(cells->get(c), static_cast<double>(inputCell(mesh, c, kind.counts)));

  const KeXDataSetI<Vec3>* vectors = e->extractVec3Set(vectorSet);
  ASSERT_NE(vectors, nullptr);
  for (std::size_t v = 0; v < vectors->getSize(); ++v)
    EXPECT_LT((vectors->get(v) - mesh.getGeometry().getCoord(v)).length(), 1e-6);

  EXPECT_EQ(e->extractScalarSet(nodeSet), nodes);
  const std::size_t stamp = nodes->getTimeStamp();
  EXPECT_EQ(nodes->getTimeStamp(), stamp);
}

TYPED_TEST(PickContract, ShortSetsAreToldAndGiveNull) {
  const typename TypeParam::Kind kind({4, 3, 2});
  const auto e = this->make(kind);
  TypeParam::extract(*e, nullptr);
  const std::vector<float> few(3, 0.0f);
  const auto set = TestFixture::CellForm::set("few", DataBinding::PER_CELL, few, {3, 1, 1});
  const MessageLog log;
  EXPECT_EQ(e->extractScalarSet(set), nullptr);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_NE(log.lines[0].find("few"), std::string::npos) << log.lines[0];
}

TYPED_TEST(PickContract, ANewStampOfTheMeshExtractsAgain) {
  typename TypeParam::Kind kind({3, 3, 3});
  const auto e = this->make(kind);
  Recorder recorder;
  e->setExtractorCallback(recorder);
  const auto& mesh = TypeParam::extract(*e, nullptr);
  const std::size_t stamp = mesh.getGeometry().getTimeStamp();
  kind.mesh.touchGeometry();
  TypeParam::extract(*e, nullptr);
  EXPECT_EQ(recorder.changes, (std::array{true, false, false}));
  EXPECT_GT(mesh.getGeometry().getTimeStamp(), stamp);
}

} // namespace
