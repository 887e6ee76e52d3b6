// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>

#include "nodes/NodesTestTools.h"
#include "nodes/TestSets.h"
#include "nodes/VolumeMeshes.h"

#include <KerrinDataMapping/nodes/KoCellFilter.h>
#include <KerrinDataMapping/nodes/KoCombineColorMapping.h>
#include <KerrinDataMapping/nodes/KoDataBinding.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <KerrinDataMapping/nodes/KoScalarSetI.h>
#include <KerrinDataMapping/nodes/KoScalarSetIjk.h>
#include <KerrinDataMapping/nodes/KoTessellator.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbIndexRangeFilter.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <Nyx/actions/NxSearchAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/caches/NxCache.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxChildList.h>

#include <stdexcept>

namespace {

const std::string NO_SET = "KoMeshIsosurface: Cannot find a compatible scalartset node in the scene graph or "
                           "isoScalarSetId field is invalid.";

/// Counts what an extraction reports.
class CountingCallback : public KiExtractorCallback {
public:
  int begins = 0, meshChanges = 0, dataChanges = 0, phases = 0;
  bool goOn = true;
  void beginExtract(std::string, bool geometry, bool topology, bool data, std::size_t) override {
    ++begins;
    if (geometry || topology) ++meshChanges;
    if (data) ++dataChanges;
  }
  void endExtract() override {}
  bool beginPhase(std::size_t, std::string, std::size_t) override {
    ++phases;
    return goOn;
  }
  bool endPhase() override { return goOn; }
  bool endStep(std::size_t) override { return goOn; }
  double getEndStepCallPeriod() override { return 0.0; }
};

class KoMeshIsosurfaceTest : public KoTest {
protected:
  KoMeshIsosurfaceTest() {
    root->addChild(meshNode.get());
    root->addChild(setNode.get());
    root->addChild(isosurface.get());
    isosurface->isovalue = 0.375f;
  }

  void use(MeshType type, const KiTypedDataSet<double>* set) {
    meshNode->setMesh(meshes.mesh(type));
    setNode->setScalarSet(set);
  }
  void use(MeshType type) { use(type, meshes.nodeSet(type)); }

  void traverse() {
    NxCallbackAction action;
    action.apply(root.get());
  }

  const KiMesh* extracted() {
    MeshType type = UNDEFINED_MESH_TYPE;
    const KiMesh* mesh = isosurface->getExtractedMesh(type);
    EXPECT_TRUE(type == SURFACE_UNSTRUCTURED || (type == UNDEFINED_MESH_TYPE && !mesh));
    return mesh;
  }

  const VolumeMeshes meshes;
  const NbRefPtr<NxSeparator> root{new NxSeparator};
  const NbRefPtr<KoMesh> meshNode{new KoMesh};
  const NbRefPtr<KoScalarSet> setNode{new KoScalarSet};
  const NbRefPtr<KoMeshIsosurface> isosurface{new KoMeshIsosurface};
};

const MeshType KINDS[] = {VOLUME_UNSTRUCTURED, VOLUME_HEXAHEDRON_IJK, VOLUME_VERTEX_HEXAHEDRON_IJK,
                          VOLUME_REGULAR,      VOLUME_RECTILINEAR,    VOLUME_CURVILINEAR};

TEST_F(KoMeshIsosurfaceTest, AllSixKindsGiveTheSurfaceOfTheValue) {
  for (const MeshType type : KINDS) {
    for (const KiTypedDataSet<double>* set : {meshes.nodeSet(type), meshes.cellSet(type)}) {
      use(type, set);
      traverse();
      EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6) << type;
    }
    EXPECT_EQ(isosurface->getUnstructuredExtractor() != nullptr, type == VOLUME_UNSTRUCTURED) << type;
    EXPECT_EQ(isosurface->getHexahedronIjkExtractor() != nullptr, type == VOLUME_HEXAHEDRON_IJK) << type;
    EXPECT_EQ(isosurface->getIjkExtractor() != nullptr, type >= VOLUME_VERTEX_HEXAHEDRON_IJK) << type;
    EXPECT_EQ(isosurface->getUnstructuredIjkExtractor(), isosurface->getHexahedronIjkExtractor());
    EXPECT_EQ(isosurface->getRegularExtractor(), isosurface->getIjkExtractor());
  }
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoMeshIsosurfaceTest, FieldsAndTheirDefaults) {
  const NbRefPtr<KoMeshIsosurface> node(new KoMeshIsosurface);
  std::vector<NxField*> fields;
  node->getFields(fields);
  EXPECT_EQ(fields,
            (std::vector<NxField*>{&node->colorScalarSetId, &node->parallel, &node->isovalue, &node->isoScalarSetId}));
  EXPECT_EQ(node->colorScalarSetId.getValue(), 0);
  EXPECT_TRUE(node->parallel.getValue());
  EXPECT_EQ(node->isovalue.getValue(), 0.f);
  EXPECT_EQ(node->isoScalarSetId.getValue(), 0);
  node->isovalue = 2.f;
  EXPECT_EQ(NbRefPtr<KoMeshIsosurface>(new KoMeshIsosurface(*node))->isovalue.getValue(), 2.f);
}

TEST_F(KoMeshIsosurfaceTest, NoExtractorBeforeTheFirstExtraction) {
  EXPECT_EQ(isosurface->getUnstructuredExtractor(), nullptr);
  EXPECT_EQ(isosurface->getHexahedronIjkExtractor(), nullptr);
  EXPECT_EQ(isosurface->getIjkExtractor(), nullptr);
}

TEST_F(KoMeshIsosurfaceTest, WithoutAMeshNothingHappens) {
  traverse();
  EXPECT_EQ(extracted(), nullptr);
  EXPECT_FALSE(isosurface->isModified()) << "the internal group was walked to the end";
  use(VOLUME_REGULAR);
  traverse();
  const KiMesh* output = extracted();
  ASSERT_NE(output, nullptr);
  meshNode->reset();
  traverse();
  EXPECT_EQ(extracted(), nullptr) << "no mesh is a new mesh too: the driver has been cleared";
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoMeshIsosurfaceTest, OtherMeshKindsAreWarnedAboutOnce) {
  const KbSurfaceMeshRegular surface({2, 2}, {0, 0, 0}, {1, 1, 0});
  use(VOLUME_REGULAR);
  traverse();
  meshNode->setMesh(&surface);
  traverse();
  traverse();
  EXPECT_EQ(takeMessages(), Messages{"KdMeshIsosurface::doExtract: Cannot compute isosurface on this type of mesh."});
  EXPECT_EQ(extracted(), nullptr);
  const std::size_t stamp = isosurface->getTimeStamp();
  traverse();
  EXPECT_GT(isosurface->getTimeStamp(), stamp) << "each traversal clears the node";
}

TEST_F(KoMeshIsosurfaceTest, MissingSetsAreWarnedAboutAndClearTheDisplay) {
  use(VOLUME_UNSTRUCTURED);
  traverse();
  EXPECT_GT(areaOf(extracted()), 0.0);
  root->removeChild(setNode.get());
  traverse();
  EXPECT_EQ(takeMessages(), Messages{NO_SET});
  EXPECT_EQ(extracted(), nullptr);
  const NbRefPtr<KoScalarSetI> typed(new KoScalarSetI);
  typed->setScalarSet(meshes.nodeSetI.get());
  root->insertChild(typed.get(), 1);
  traverse();
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6);
  isosurface->isoScalarSetId = 1;
  traverse();
  isosurface->isoScalarSetId = -1;
  traverse();
  EXPECT_EQ(takeMessages(), (Messages{NO_SET, NO_SET}));
}

TEST_F(KoMeshIsosurfaceTest, AGenericSetHidesTheTypedLists) {
  use(VOLUME_UNSTRUCTURED);
  const NbRefPtr<KoScalarSetI> typed(new KoScalarSetI);
  typed->setScalarSet(meshes.nodeSetI.get());
  root->insertChild(typed.get(), 2);
  isosurface->isoScalarSetId = 1;
  traverse();
  EXPECT_EQ(extracted(), nullptr);
  EXPECT_EQ(takeMessages(), Messages()) << "an index that misses the generic list is not warned about";
}

TEST_F(KoMeshIsosurfaceTest, HexahedronCellSetsComeThroughGenericNodesOnly) {
  use(VOLUME_HEXAHEDRON_IJK);
  root->removeChild(setNode.get());
  const NbRefPtr<KoScalarSetIjk> typed(new KoScalarSetIjk);
  typed->setScalarSet(meshes.cellSetIjk.get());
  root->insertChild(typed.get(), 1);
  traverse();
  EXPECT_EQ(takeMessages(), Messages{NO_SET});
  root->removeChild(typed.get());
  setNode->setScalarSet(meshes.cellSetIjk.get());
  root->insertChild(setNode.get(), 1);
  traverse();
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6);
}

TEST_F(KoMeshIsosurfaceTest, SetsOfTheWrongFormOrBindingAreWarnedAbout) {
  use(VOLUME_REGULAR, meshes.nodeSetI.get());
  traverse();
  EXPECT_EQ(takeMessages(), Messages{NO_SET});
  TestSetI<double> unbound(std::vector<double>(125, 0.0));
  unbound.binding = DataBinding::AUTO;
  use(VOLUME_UNSTRUCTURED, &unbound);
  traverse();
  EXPECT_EQ(takeMessages(), Messages{NO_SET});
  EXPECT_EQ(extracted(), nullptr);
}

TEST_F(KoMeshIsosurfaceTest, AnEmptySurfaceIsNoError) {
  use(VOLUME_REGULAR);
  isosurface->isovalue = 5.f;
  traverse();
  EXPECT_EQ(areaOf(extracted()), 0.0);
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoMeshIsosurfaceTest, CellFiltersLeaveCellsOutAndWrongFormsAreDropped) {
  const KbIndexRangeFilterI lower({{0}}, {{32}});
  const NbRefPtr<KoCellFilter> filter(new KoCellFilter);
  root->insertChild(filter.get(), 1);
  use(VOLUME_UNSTRUCTURED);
  filter->setCellFilter(&lower);
  traverse();
  EXPECT_NEAR(areaOf(extracted()), 0.5, 1e-6) << "the lower half of the cube";
  use(VOLUME_REGULAR);
  traverse();
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6);
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoMeshIsosurfaceTest, SetsAreMappedOntoTheOutput) {
  for (const MeshType type : KINDS) {
    use(type);
    EXPECT_EQ(isosurface->extractScalarSet(nullptr), nullptr);
    traverse();
    for (const KiTypedDataSet<double>* set : {meshes.nodeSet(type), meshes.cellSet(type)}) {
      const auto* mapped = dynamic_cast<const KiDataSetI<double>*>(isosurface->extractScalarSet(set));
      ASSERT_NE(mapped, nullptr) << type;
      ASSERT_GT(mapped->getSize(), 0U) << type;
      for (std::size_t i = 0; i < mapped->getSize(); ++i)
        EXPECT_NEAR(mapped->get(i), 0.375, 1e-6) << type;
    }
  }
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoMeshIsosurfaceTest, SetsThatDoNotSuitAreWarnedAbout) {
  use(VOLUME_UNSTRUCTURED);
  traverse();
  EXPECT_EQ(isosurface->extractScalarSet(meshes.nodeSetIjk.get()), nullptr);
  use(VOLUME_HEXAHEDRON_IJK);
  traverse();
  EXPECT_EQ(isosurface->extractScalarSet(meshes.cellSetI.get()), nullptr);
  use(VOLUME_CURVILINEAR);
  traverse();
  EXPECT_EQ(isosurface->extractScalarSet(meshes.nodeSetI.get()), nullptr);
  const std::string text = "::extractScalarSet(): Cannot extract data set with the given binding on this type of mesh.";
  EXPECT_EQ(takeMessages(), (Messages{"KiIsosurfExtractUnstructured" + text, "KiIsosurfExtractHexahedronIjk" + text,
                                      "KiIsosurfExtractIjk" + text}));
}

TEST_F(KoMeshIsosurfaceTest, SetsOfTheStateAreMappedByIndex) {
  use(VOLUME_UNSTRUCTURED);
  const NbRefPtr<KoScalarSetI> typed(new KoScalarSetI);
  typed->setScalarSet(meshes.colorSetI.get());
  traverse();
  lookBelow({typed.get()}, [&](NxState* state) {
    const KiDataSetI<double>* mapped = isosurface->extractScalarSetI(state, 0);
    ASSERT_NE(mapped, nullptr);
    EXPECT_NEAR(mapped->get(0), 37.5, 1e-4);
    EXPECT_EQ(isosurface->extractScalarSetI(state, 1), nullptr);
    EXPECT_EQ(isosurface->extractScalarSetIj(state, 0), nullptr) << "the output is flat";
    EXPECT_EQ(isosurface->extractVec3SetI(state, 0), nullptr);
    EXPECT_EQ(isosurface->extractVec3SetIj(state, 0), nullptr);
  });
}

TEST_F(KoMeshIsosurfaceTest, AnotherMeshOfTheTypeMakesANewExtractor) {
  use(VOLUME_REGULAR);
  CountingCallback callback;
  isosurface->setExtractorCallback(&callback);
  traverse();
  EXPECT_EQ(callback.meshChanges, 1);
  const int dataChanges = callback.dataChanges;
  EXPECT_GT(dataChanges, 0);
  const int begins = callback.begins;
  traverse();
  EXPECT_GT(callback.begins, begins) << "the extractor is asked each time";
  EXPECT_EQ(callback.meshChanges, 1) << "and finds that nothing has changed";
  EXPECT_EQ(callback.dataChanges, dataChanges);
  const std::size_t stamp = isosurface->getTimeStamp();
  const KbVolumeMeshRegular other({4, 4, 4}, {0, 0, 0}, {1, 2, 1});
  meshNode->setMesh(&other);
  traverse();
  EXPECT_GT(isosurface->getTimeStamp(), stamp);
  EXPECT_NEAR(areaOf(extracted()), 2.0, 1e-6);
  EXPECT_EQ(callback.meshChanges, 2);
}

TEST_F(KoMeshIsosurfaceTest, ATouchOfTheMeshNodeDoesNotClear) {
  use(VOLUME_REGULAR);
  traverse();
  const std::size_t stamp = isosurface->getTimeStamp();
  const KiIsosurfExtractIjk* extractor = isosurface->getIjkExtractor();
  meshNode->touch();
  traverse();
  EXPECT_EQ(isosurface->getTimeStamp(), stamp);
  EXPECT_EQ(isosurface->getIjkExtractor(), extractor);
}

TEST_F(KoMeshIsosurfaceTest, ParallelClearsAtOnce) {
  use(VOLUME_REGULAR);
  traverse();
  ASSERT_NE(extracted(), nullptr);
  const std::size_t stamp = isosurface->getTimeStamp();
  isosurface->parallel = false;
  EXPECT_EQ(extracted(), nullptr);
  EXPECT_GT(isosurface->getTimeStamp(), stamp);
  traverse();
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6);
}

TEST_F(KoMeshIsosurfaceTest, AnotherTessellatorClears) {
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic());
  const NbRefPtr<KoTessellator> node(new KoTessellator);
  root->insertChild(node.get(), 0);
  use(VOLUME_UNSTRUCTURED);
  traverse();
  EXPECT_FALSE(isosurface->isUsingTessellator());
  const std::size_t stamp = isosurface->getTimeStamp();
  node->setTessellator(tessellator.get());
  traverse();
  EXPECT_TRUE(isosurface->isUsingTessellator());
  EXPECT_GT(isosurface->getTimeStamp(), stamp);
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6);
  const std::size_t again = isosurface->getTimeStamp();
  traverse();
  EXPECT_EQ(isosurface->getTimeStamp(), again);
}

TEST_F(KoMeshIsosurfaceTest, TheApplicationsCallbackWatchesAndCannotStop) {
  CountingCallback callback;
  callback.goOn = false;
  isosurface->setExtractorCallback(callback);
  use(VOLUME_UNSTRUCTURED);
  traverse();
  const int begins = callback.begins;
  EXPECT_GT(begins, 0);
  EXPECT_GT(callback.phases, 0);
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6);
  isosurface->setExtractorCallback(nullptr);
  traverse();
  EXPECT_EQ(callback.begins, begins);
}

TEST_F(KoMeshIsosurfaceTest, FieldsMakeTheNodeModifiedUntilATraversalHasFinished) {
  EXPECT_TRUE(isosurface->isModified());
  traverse();
  EXPECT_FALSE(isosurface->isModified());
  isosurface->isovalue = 0.5f;
  EXPECT_TRUE(isosurface->isModified());
  traverse();
  EXPECT_FALSE(isosurface->isModified());
}

template <class Exception>
class ThrowingSet : public TestSetI<double> {
public:
  double get(std::size_t) const override { throw Exception(); }
};
struct Fault : std::runtime_error {
  Fault()
      : std::runtime_error("the set is out of order") {}
};

TEST_F(KoMeshIsosurfaceTest, ExceptionsArePostedAndLeaveTheNodeEmpty) {
  ThrowingSet<Fault> fault;
  ThrowingSet<std::bad_alloc> noMemory;
  struct Unknown {};
  ThrowingSet<Unknown> unknown;
  isosurface->parallel = false;
  for (TestSetI<double>* set : std::initializer_list<TestSetI<double>*>{&fault, &noMemory, &unknown})
    set->values.resize(125);

  use(VOLUME_UNSTRUCTURED);
  traverse();
  ASSERT_NE(extracted(), nullptr);
  isosurface->isovalue = 0.5f;
  setNode->setScalarSet(&fault);
  traverse();
  EXPECT_EQ(takeMessages(), Messages{": the set is out of order"});
  EXPECT_EQ(extracted(), nullptr);
  EXPECT_TRUE(isosurface->isModified());
  EXPECT_FALSE(isosurface->isNotifyEnabled()) << "no automatic repair";
  setNode->setScalarSet(&unknown);
  traverse();
  EXPECT_EQ(takeMessages(), Messages{": unknown exception"});
  setNode->setScalarSet(&noMemory);
  traverse();
  EXPECT_EQ(takeMessages().size(), 1U);
  setNode->setScalarSet(meshes.nodeSetI.get());
  traverse();
  EXPECT_NEAR(areaOf(extracted()), 1.0, 1e-6) << "the next traversal simply runs again";
}

TEST_F(KoMeshIsosurfaceTest, TheInternalGraphIsHiddenFromSearchAndState) {
  EXPECT_FALSE(isosurface->affectsState());
  EXPECT_TRUE(isosurface->isSynchronizingContentOnly());
  ASSERT_EQ(isosurface->getChildren()->getLength(), 1);
  NxNode* group = (*isosurface->getChildren())[0];
  ASSERT_TRUE(group->isOfType(NxSeparator::getClassTypeId()));
  EXPECT_STREQ(static_cast<NxSeparator*>(group)->getChild(0)->getName().getString(), "SurfaceMesh_Display");
  NxSearchAction search;
  search.setNode(group);
  search.apply(root.get());
  EXPECT_FALSE(search.isFound());
  search.setNode(isosurface.get());
  search.apply(root.get());
  EXPECT_TRUE(search.isFound());
}

TEST_F(KoMeshIsosurfaceTest, WritesItsInternalGraphInPlaceOfItself) {
  NxOutput output;
  output.setBuffer();
  NxWriteAction action(&output);
  action.apply(root.get());
  EXPECT_NE(output.getBuffer().find("SurfaceMesh_Display"), std::string::npos);
  EXPECT_EQ(output.getBuffer().find("KoMeshIsosurface"), std::string::npos);
}

TEST_F(KoMeshIsosurfaceTest, DebuggingTellsWhatClearsTheNode) {
  NxCache::setDebuggingCache(true);
  use(VOLUME_REGULAR);
  traverse();
  NxCache::setDebuggingCache(false);
  char text[120];
  std::snprintf(text, sizeof text,
                ": CACHE DEBUG: clear representation KoMeshIsosurface(0x%p) due to invalid mesh in cache.\n",
                static_cast<void*>(isosurface.get()));
  EXPECT_EQ(takeMessages(), Messages{text});
}

TEST_F(KoMeshIsosurfaceTest, OneRepresentationsOutputIsTheNextOnesInput) {
  use(VOLUME_REGULAR);
  traverse();
  const NbRefPtr<KoMesh> next(new KoMesh);
  next->connectFrom(isosurface.get());
  MeshType type = UNDEFINED_MESH_TYPE;
  EXPECT_EQ(next->getMesh(type), extracted());
  EXPECT_EQ(type, SURFACE_UNSTRUCTURED);
}

} // namespace
