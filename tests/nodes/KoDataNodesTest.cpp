// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoMesh.h>

#include "nodes/NodesTestTools.h"
#include "nodes/TestSets.h"

#include <KerrinDataMapping/elements/KoCellFilterElement.h>
#include <KerrinDataMapping/elements/KoDataBindingElement.h>
#include <KerrinDataMapping/elements/KoMeshElement.h>
#include <KerrinDataMapping/elements/KoTessellatorElement.h>
#include <KerrinDataMapping/nodes/KoCellFilter.h>
#include <KerrinDataMapping/nodes/KoDataBinding.h>
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <KerrinDataMapping/nodes/KoScalarSetI.h>
#include <KerrinDataMapping/nodes/KoScalarSetIj.h>
#include <KerrinDataMapping/nodes/KoScalarSetIjk.h>
#include <KerrinDataMapping/nodes/KoStringSet.h>
#include <KerrinDataMapping/nodes/KoTessellator.h>
#include <KerrinDataMapping/nodes/KoVec3SetI.h>
#include <KerrinDataMapping/nodes/KoVec3SetIj.h>
#include <KerrinDataMapping/nodes/KoVec3SetIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbCellListFilter.h>
#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshRegular.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>
#include <Nyx/sensors/NxNodeSensor.h>

namespace {

using KoDataNodesTest = KoTest;

/// A mesh of no listed kind.
class OtherMesh : public KiMesh {};

class LineSide : public KiLineMeshRegular {
public:
  const KiTopologyI& getTopology() const override { return m_mesh.getTopology(); }
  const KiGeometryRegular& getGeometry() const override { return m_mesh.getGeometry(); }

private:
  KbLineMeshRegular m_mesh{{1}, {0, 0, 0}, {1, 0, 0}};
};
class VolumeSide : public KiVolumeMeshRegular {
public:
  const KiTopologyIjk& getTopology() const override { return m_mesh.getTopology(); }
  const KiGeometryRegular& getGeometry() const override { return m_mesh.getGeometry(); }

private:
  KbVolumeMeshRegular m_mesh{{1, 1, 1}, {0, 0, 0}, {1, 1, 1}};
};
/// A mesh with two interfaces.
class TwofoldMesh : public LineSide, public VolumeSide {
protected:
  void toStream(std::ostream& stream) const override { VolumeSide::toStream(stream); }
};

class FormlessFilter : public KiCellFilter {
public:
  std::size_t getTimeStamp() const override { return 1; }
};

/// Counts the notifications of a node.
class TouchCounter {
public:
  explicit TouchCounter(NxNode* node)
      : m_sensor([](void* data, NxSensor*) { ++*static_cast<int*>(data); }, &count) {
    m_sensor.setPriority(0);
    m_sensor.attach(node);
  }
  int count = 0;

private:
  NxNodeSensor m_sensor;
};

struct ElementContent {
  const KiMesh* mesh = nullptr;
  MeshType type = UNDEFINED_MESH_TYPE;
  std::size_t stamp = 0;
  KoMeshRepresentation* source = nullptr;
};

ElementContent below(NxNode* node) {
  ElementContent content;
  lookBelow({node}, [&](NxState* state) {
    content.mesh = KoMeshElement::getMesh(state, content.type, content.stamp);
    content.source = KoMeshElement::getConnectedRepresentation(state, content.type);
  });
  return content;
}

TEST_F(KoDataNodesTest, MeshStartsEmpty) {
  const NbRefPtr<KoMesh> node(new KoMesh);
  MeshType type = VOLUME_REGULAR;
  EXPECT_EQ(node->getMesh(type), nullptr);
  EXPECT_EQ(type, UNDEFINED_MESH_TYPE);
  EXPECT_EQ(below(node.get()).stamp, static_cast<std::size_t>(-1));
}

TEST_F(KoDataNodesTest, MeshFindsTheThirteenKinds) {
  const std::vector<float> line = {0, 0, 0, 1, 0, 0};
  const std::vector<float> quad = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};
  const std::vector<float> cube = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1};
  const std::vector<float> axis = {0, 1};
  const std::vector<std::int32_t> two = {0, 1}, three = {0, 1, 2}, four = {0, 1, 2, 4};
  const std::vector<std::int32_t> eight = {0, 1, 3, 2, 4, 5, 7, 6};
  const std::vector<float> coord = {0, 0, 0, 0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1, 1, 1, 0, 1, 1, 1};
  const std::vector<float> zcorn = {0, 0, 0, 0, 1, 1, 1, 1};

  const KbVolumeMeshUnstructured m0(cube, {KiVolumeCell::TETRAHEDRON, four});
  const KbVolumeMeshHexahedronIjk m1({1, 1, 1}, cube, eight);
  const KbVolumeMeshVertexHexahedronIjk m2({1, 1, 1}, coord, zcorn);
  const KbVolumeMeshRegular m3({1, 1, 1}, {0, 0, 0}, {1, 1, 1});
  const KbVolumeMeshRectilinear m4(axis, axis, axis);
  const KbVolumeMeshCurvilinear m5({1, 1, 1}, cube);
  const KbSurfaceMeshUnstructured m6(quad, {KiSurfaceCell::TRIANGLE, three});
  const KbSurfaceMeshRegular m7({1, 1}, {0, 0, 0}, {1, 1, 0});
  const KbSurfaceMeshRectilinear m8(axis, axis);
  const KbSurfaceMeshCurvilinear m9({1, 1}, quad);
  const KbLineMeshUnstructured m10(line, {KiLineCell::LINE, two});
  const KbLineMeshRegular m11({1}, {0, 0, 0}, {1, 0, 0});
  const KbLineMeshCurvilinear m12({1}, line);
  const std::vector<const KiMesh*> meshes = {&m0, &m1, &m2, &m3, &m4, &m5, &m6, &m7, &m8, &m9, &m10, &m11, &m12};
  const NbRefPtr<KoMesh> node(new KoMesh);
  for (std::size_t i = 0; i < meshes.size(); ++i) {
    node->setMesh(meshes[i]);
    MeshType type = UNDEFINED_MESH_TYPE;
    EXPECT_EQ(node->getMesh(type), meshes[i]);
    EXPECT_EQ(type, static_cast<MeshType>(i));
  }
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoDataNodesTest, MeshWithTwoInterfacesCountsAsTheEarlierKind) {
  const NbRefPtr<KoMesh> node(new KoMesh);
  const TwofoldMesh mesh;
  node->setMesh(&mesh);
  MeshType type = UNDEFINED_MESH_TYPE;
  EXPECT_EQ(node->getMesh(type), static_cast<const KiMesh*>(&mesh));
  EXPECT_EQ(type, VOLUME_REGULAR);
}

TEST_F(KoDataNodesTest, MeshOfNoKindIsRefused) {
  const NbRefPtr<KoMesh> node(new KoMesh);
  const OtherMesh other;
  node->setMesh(&other);
  EXPECT_EQ(takeMessages(), Messages{"KoMesh::setMesh: Not supported mesh type."});
  MeshType type = VOLUME_REGULAR;
  EXPECT_EQ(node->getMesh(type), nullptr);
  EXPECT_EQ(type, UNDEFINED_MESH_TYPE);
}

TEST_F(KoDataNodesTest, MeshPutsItselfIntoTheStateAndTakesANewStampEachTime) {
  const NbRefPtr<KoMesh> node(new KoMesh);
  const KbVolumeMeshRegular mesh({1, 1, 1}, {0, 0, 0}, {1, 1, 1});
  TouchCounter touches(node.get());
  node->setMesh(&mesh);
  EXPECT_EQ(touches.count, 1);
  const ElementContent first = below(node.get());
  EXPECT_EQ(first.mesh, static_cast<const KiMesh*>(&mesh));
  EXPECT_EQ(first.type, VOLUME_REGULAR);
  EXPECT_EQ(first.source, nullptr);
  node->setMesh(&mesh);
  EXPECT_GT(below(node.get()).stamp, first.stamp);
  node->reset();
  EXPECT_EQ(touches.count, 3);
  const ElementContent empty = below(node.get());
  EXPECT_EQ(empty.mesh, nullptr);
  EXPECT_EQ(empty.type, UNDEFINED_MESH_TYPE);
  EXPECT_NE(empty.stamp, static_cast<std::size_t>(-1));
}

TEST_F(KoDataNodesTest, ConnectionHidesTheStoredMeshUntilItEnds) {
  const NbRefPtr<KoMesh> node(new KoMesh);
  const NbRefPtr<KoMeshIsosurface> source(new KoMeshIsosurface);
  const KbVolumeMeshRegular mesh({1, 1, 1}, {0, 0, 0}, {1, 1, 1});
  node->setMesh(&mesh);
  node->connectFrom(source.get());
  // The source has extracted nothing yet.
  const ElementContent connected = below(node.get());
  EXPECT_EQ(connected.mesh, nullptr);
  EXPECT_EQ(connected.type, UNDEFINED_MESH_TYPE);
  EXPECT_EQ(connected.source, source.get());
  EXPECT_EQ(connected.stamp, source->getTimeStamp());
  node->connectFrom(nullptr);
  EXPECT_EQ(below(node.get()).mesh, static_cast<const KiMesh*>(&mesh));
  node->connectFrom(source.get());
  node->setMesh(&mesh);
  EXPECT_EQ(below(node.get()).source, nullptr) << "setMesh ends a connection";
}

TEST_F(KoDataNodesTest, CellFilterFindsItsForm) {
  using E = KoCellFilterElement;
  const KbCellListFilterI i(std::vector<KbIndex<1>>{{0}});
  const KbCellListFilterIj ij(std::vector<KbIndex<2>>{{0, 0}});
  const KbCellListFilterIjk ijk(std::vector<KbIndex<3>>{{0, 0, 0}});
  const NbRefPtr<KoCellFilter> node(new KoCellFilter);
  const auto typeBelow = [&](const KiCellFilter* expected) {
    E::CellFilterType type = E::CELL_FILTER_NONE;
    lookBelow({node.get()}, [&](NxState* state) { EXPECT_EQ(E::getCellFilter(state, type), expected); });
    return type;
  };
  EXPECT_EQ(typeBelow(nullptr), E::CELL_FILTER_NONE);
  TouchCounter touches(node.get());
  node->setCellFilter(&i);
  EXPECT_EQ(typeBelow(&i), E::CELL_FILTER_I);
  node->setCellFilter(&ij);
  EXPECT_EQ(typeBelow(&ij), E::CELL_FILTER_IJ);
  node->setCellFilter(&ijk);
  EXPECT_EQ(typeBelow(&ijk), E::CELL_FILTER_IJK);
  EXPECT_EQ(takeMessages(), Messages());

  const FormlessFilter formless;
  node->setCellFilter(&formless);
  EXPECT_EQ(takeMessages(), Messages{"KoCellFilter::setCellFilter: cellFilter must be of type KiCellFilterI, "
                                     "KiCellFilterIj or KiCellFilterIjk."});
  EXPECT_EQ(node->getCellFilter(), &formless) << "the pointer stays";
  EXPECT_EQ(typeBelow(&formless), E::CELL_FILTER_IJK) << "and so does the form";
  node->reset();
  EXPECT_EQ(typeBelow(nullptr), E::CELL_FILTER_NONE);
  node->setCellFilter(nullptr);
  EXPECT_EQ(typeBelow(nullptr), E::CELL_FILTER_NONE);
  EXPECT_EQ(touches.count, 6);
}

TEST_F(KoDataNodesTest, GenericScalarSetTakesEveryFormAndRefusesNone) {
  const NbRefPtr<KoScalarSet> node(new KoScalarSet);
  const TestSetI<double> i;
  const TestSetIj<double> ij;
  const TestSetIjk<double> ijk;
  TouchCounter touches(node.get());
  for (const KiTypedDataSet<double>* set : std::initializer_list<const KiTypedDataSet<double>*>{&i, &ij, &ijk}) {
    node->setScalarSet(set);
    EXPECT_EQ(node->getScalarSet(), set);
  }
  EXPECT_EQ(touches.count, 3);
  EXPECT_EQ(takeMessages(), Messages());
  const FormlessSet formless;
  node->setScalarSet(&formless);
  EXPECT_EQ(takeMessages(), Messages{"KoScalarSet::setScalarSet: ScalarSet must be of type KiScalardSetI, "
                                     "KiScalardSetIj or KiScalardSetIjk."});
  EXPECT_EQ(node->getScalarSet(), nullptr);
  EXPECT_EQ(touches.count, 4) << "touched all the same";
  node->setScalarSet(&i);
  node->reset();
  EXPECT_EQ(node->getScalarSet(), nullptr);
  EXPECT_EQ(touches.count, 6);
}

TEST_F(KoDataNodesTest, StringSetTakesEveryFormAndRefusesNone) {
  class FormlessStrings : public TestSetBase<KiTypedDataSet<std::string>> {
  public:
    std::string getMin() const override { return ""; }
    std::string getMax() const override { return ""; }
  };
  const NbRefPtr<KoStringSet> node(new KoStringSet);
  const TestSetI<std::string> set;
  node->setStringSet(&set);
  EXPECT_EQ(node->getStringSet(), &set);
  const FormlessStrings formless;
  node->setStringSet(&formless);
  EXPECT_EQ(takeMessages(), Messages{"KoStringSet::setStringSet: StringSet must be of type KiStringSetI, "
                                     "KiStringSetIj or KiStringSetIjk."});
  EXPECT_EQ(node->getStringSet(), nullptr);
  lookBelow({node.get()}, [](NxState* state) { EXPECT_EQ(KoStringSetElement::getNum(state), 1); });
}

/// One body for the six nodes that differ in nothing but the type of their set.
template <class Node, class Element, class Set, class Put, class Get>
void checkSetNode(Put put, Get get) {
  const Set a, b;
  const NbRefPtr<Node> first(new Node), second(new Node);
  EXPECT_EQ(get(*first), nullptr);
  TouchCounter touches(first.get());
  put(*first, &a);
  EXPECT_EQ(touches.count, 0) << "a viewer does not redraw by itself";
  EXPECT_EQ(get(*first), &a);
  put(*second, &b);
  lookBelow({first.get(), second.get()}, [&](NxState* state) {
    EXPECT_EQ(Element::getNum(state), 2);
    EXPECT_EQ(Element::get(state, 0), &a);
    EXPECT_EQ(Element::get(state, 1), &b);
  });
  const NbRefPtr<Node> copy(new Node(*first));
  EXPECT_EQ(get(*copy), &a);
  const NbRefPtr<NxNode> deepCopy(first->copy());
  EXPECT_EQ(get(static_cast<Node&>(*deepCopy)), &a);
}

TEST_F(KoDataNodesTest, TypedSetNodesAddToTheirLists) {
  const auto putScalar = [](auto& node, const auto* set) { node.setScalarSet(set); };
  const auto getScalar = [](auto& node) { return node.getScalarSet(); };
  const auto putVec3 = [](auto& node, const auto* set) { node.setVec3Set(set); };
  const auto getVec3 = [](auto& node) { return node.getVec3Set(); };
  using V = KbVec3<double>;
  checkSetNode<KoScalarSetI, KoScalarSetElementI, TestSetI<double>>(putScalar, getScalar);
  checkSetNode<KoScalarSetIj, KoScalarSetElementIj, TestSetIj<double>>(putScalar, getScalar);
  checkSetNode<KoScalarSetIjk, KoScalarSetElementIjk, TestSetIjk<double>>(putScalar, getScalar);
  checkSetNode<KoVec3SetI, KoVec3SetElementI, TestSetI<V>>(putVec3, getVec3);
  checkSetNode<KoVec3SetIj, KoVec3SetElementIj, TestSetIj<V>>(putVec3, getVec3);
  checkSetNode<KoVec3SetIjk, KoVec3SetElementIjk, TestSetIjk<V>>(putVec3, getVec3);
}

TEST_F(KoDataNodesTest, TessellatorTakesANewStampEachTime) {
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic());
  const NbRefPtr<KoTessellator> node(new KoTessellator);
  std::size_t before = 0, after = 0;
  lookBelow({node.get()}, [&](NxState* state) {
    EXPECT_EQ(KoTessellatorElement::getTessellator(state, before), nullptr);
    EXPECT_EQ(before, static_cast<std::size_t>(-1)) << "nothing was ever set";
  });
  TouchCounter touches(node.get());
  node->setTessellator(tessellator.get());
  lookBelow({node.get()},
            [&](NxState* state) { EXPECT_EQ(KoTessellatorElement::getTessellator(state, before), tessellator.get()); });
  node->setTessellator(tessellator.get());
  lookBelow({node.get()}, [&](NxState* state) { KoTessellatorElement::getTessellator(state, after); });
  EXPECT_GT(after, before);
  EXPECT_EQ(touches.count, 2);
}

TEST_F(KoDataNodesTest, DataBindingNamesItsValues) {
  const NbRefPtr<KoDataBinding> node(new KoDataBinding);
  EXPECT_EQ(node->dataBinding.getValue(), -1);
  for (const auto& [text, binding] :
       {std::pair("AUTO", DataBinding::AUTO), std::pair("PER_CELL", DataBinding::PER_CELL),
        std::pair("PER_NODE", DataBinding::PER_NODE)}) {
    EXPECT_TRUE(node->dataBinding.set(text)) << text;
    lookBelow({node.get()},
              [&, b = binding](NxState* state) { EXPECT_EQ(KoDataBindingElement::getDataBinding(state), b); });
  }
}

} // namespace
