// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoActionNode.h>

#include "nodes/NodesTestTools.h"

#include <KerrinDataMapping/nodes/KoDataBinding.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoLinearColorMapping.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxPickAction.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/actions/NxSearchAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxDB.h>

namespace {

/// A node that counts how often an action has come down to `doAction`.
class CountingNode : public KoMesh {
public:
  int count = 0;
  void doAction(NxAction* action) override {
    ++count;
    KoMesh::doAction(action);
  }

protected:
  ~CountingNode() override = default;
};

class KoActionNodeTest : public KoTest {
protected:
  const NbRefPtr<CountingNode> node{new CountingNode};

  template <class Action>
  int countOf() {
    Action action;
    node->count = 0;
    action.apply(node.get());
    return node->count;
  }
};

TEST_F(KoActionNodeTest, ActionsComeDownToDoAction) {
  EXPECT_EQ(countOf<NxCallbackAction>(), 1);
  EXPECT_EQ(countOf<NxGetBoundingBoxAction>(), 1);
  EXPECT_EQ(countOf<NxGetMatrixAction>(), 1);
  EXPECT_EQ(countOf<NxHandleEventAction>(), 1);
  EXPECT_EQ(countOf<NxPickAction>(), 1);
  EXPECT_EQ(countOf<NxRayPickAction>(), 1);
  EXPECT_EQ(countOf<NxGetPrimitiveCountAction>(), 1);
  EXPECT_EQ(countOf<NxDistributeAction>(), 1);
}

TEST_F(KoActionNodeTest, RenderComesDownToDoAction) {
  NxGLRenderAction action{NbViewportRegion(8, 8)};
  node->GLRender(&action);
  EXPECT_EQ(node->count, 1);
}

TEST_F(KoActionNodeTest, SearchStaysTheToolkits) {
  NxSearchAction action;
  action.setNode(node.get());
  action.apply(node.get());
  EXPECT_TRUE(action.isFound());
  EXPECT_EQ(node->count, 0);
}

TEST_F(KoActionNodeTest, WriteWritesTheFields) {
  const NbRefPtr<KoDrawStyle> style(new KoDrawStyle);
  style->displayEdges = true;
  NxOutput output;
  output.setBuffer();
  NxWriteAction action(&output);
  action.apply(style.get());
  EXPECT_EQ(output.getBuffer(), "#Nyx V1.0 ascii\n\nKoDrawStyle {\n  displayEdges TRUE\n}\n");
}

TEST_F(KoActionNodeTest, ClassesOfTheLibraryAreNotBuiltIn) { EXPECT_EQ(node->getIsBuiltIn(), 0); }

TEST(KoNodeClass, ConstructionBeforeInitIsPostedOnceAndWorks) {
  NxDB::init();
  {
    NxMessageCollector messages;
    const NbRefPtr<KoMesh> first(new KoMesh);
    const NbRefPtr<KoMesh> second(new KoMesh);
    EXPECT_EQ(messages.count("Can't construct a node of type KoMesh until initClass() has been called"), 1);
    EXPECT_FALSE(KoMesh::getClassTypeId().isBad());
    EXPECT_TRUE(first->isOfType(KoMesh::getClassTypeId()));
  }
  KoMesh::exitClass();
  KoActionNode::exitClass();
  NxDB::finish();
}

TEST(KoNodeClass, ChildBeforeParentIsPostedAndRepaired) {
  NxDB::init();
  {
    const NxMessageCollector messages;
    KoScalarSet::initClass();
    ASSERT_EQ(messages.getMessages().size(), 1U);
    EXPECT_EQ(messages.getMessages()[0].origin, "KoScalarSet::initClass");
    EXPECT_EQ(messages.getMessages()[0].text, "KoScalarSet initialized before parent class KoActionNode\n");
    EXPECT_FALSE(KoActionNode::getClassTypeId().isBad());
  }
  KoScalarSet::exitClass();
  KoActionNode::exitClass();
  NxDB::finish();
}

TEST(KoNodeClass, SecondExitIsPostedAndHasNoEffect) {
  KoKerrin::init();
  KoMesh::exitClass();
  {
    const NxMessageCollector messages;
    KoMesh::exitClass();
    ASSERT_EQ(messages.getMessages().size(), 1U);
    EXPECT_EQ(messages.getMessages()[0].origin, "KoMesh::exitClass");
    EXPECT_NE(messages.getMessages()[0].text.find(
                  "for this class. Check exitClass() method is implemented and is called only once.\n"),
              std::string::npos);
  }
  KoMesh::initClass();
  KoKerrin::finish();
}

using KoCopyTest = KoTest;

TEST_F(KoCopyTest, NodesCopyTheirFields) {
  const NbRefPtr<KoDataBinding> binding(new KoDataBinding);
  binding->dataBinding = KoDataBinding::PER_CELL;
  const NbRefPtr<KoDataBinding> copy(new KoDataBinding(*binding));
  EXPECT_EQ(copy->dataBinding.getValue(), 0);
  binding->dataBinding = KoDataBinding::PER_NODE;
  *copy = *binding;
  EXPECT_EQ(copy->dataBinding.getValue(), 1);

  const NbRefPtr<KoLinearColorMapping> mapping(new KoLinearColorMapping);
  mapping->values.setValue(3.f);
  const NbRefPtr<NxNode> mappingCopy(mapping->copy());
  ASSERT_TRUE(mappingCopy->isOfType(KoLinearColorMapping::getClassTypeId()));
  EXPECT_EQ(static_cast<KoLinearColorMapping*>(mappingCopy.get())->values[0], 3.f);
}

} // namespace
