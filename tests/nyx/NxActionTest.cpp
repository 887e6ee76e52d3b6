// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxPickAction.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/actions/NxSearchAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/details/NxFaceDetail.h>
#include <Nyx/details/NxLineDetail.h>
#include <Nyx/elements/NxViewportRegionElement.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxPath.h>
#include <Nyx/misc/NxState.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/nodes/NxSwitch.h>

#include <stdexcept>

namespace {

/// Does what its function says, whatever the action.
class TestProbe : public TestNode {
  NX_NODE_HEADER(TestProbe);

public:
  TestProbe() { NX_NODE_CONSTRUCTOR(TestProbe); }
  void doAction(NxAction* action) override {
    if (function) function(action);
  }
  std::function<void(NxAction*)> function;
};
NX_NODE_SOURCE(TestProbe, TestNode)

} // namespace

class NxActionTest : public ToolkitTest {
protected:
  void SetUp() override {
    ToolkitTest::SetUp();
    TestProbe::initClass();
  }
  void TearDown() override {
    TestProbe::exitClass();
    ToolkitTest::TearDown();
  }
};

TEST_F(NxActionTest, EveryActionButSearchAndWriteReachesDoAction) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  root->addChild(node);
  int expected = 0;
  const auto expectCalled = [&](NxAction& action) {
    action.apply(root.get());
    EXPECT_EQ(node->numActions, ++expected) << action.getTypeId().getName().getString();
  };
  NxCallbackAction callback;
  NxGetBoundingBoxAction box;
  NxHandleEventAction event;
  NxPickAction pick;
  NxRayPickAction rayPick;
  NxGetPrimitiveCountAction count;
  NxDistributeAction distribute;
  for (NxAction* action : std::vector<NxAction*>{&callback, &box, &event, &pick, &rayPick, &count, &distribute})
    expectCalled(*action);

  NxGetMatrixAction matrix; // Without a path a group's children are left out, so to the node itself.
  matrix.apply(node.get());
  EXPECT_EQ(node->numActions, ++expected);

  NxSearchAction search;
  search.setNode(node);
  search.apply(root.get());
  EXPECT_TRUE(search.isFound());
  NxOutput output;
  output.setBuffer();
  NxWriteAction write(&output);
  write.apply(root.get());
  EXPECT_EQ(node->numActions, expected);
}

TEST_F(NxActionTest, SeparatorKeepsAndGroupLeaksTheState) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSeparator* const separator = new NxSeparator;
  NxGroup* const group = new NxGroup;
  TestNumber* const nodes[4] = {new TestNumber, new TestNumber, new TestNumber, new TestNumber};
  for (int i = 0; i < 4; ++i)
    nodes[i]->number = i + 1;
  root->addChild(nodes[0]);
  separator->addChild(nodes[1]);
  root->addChild(separator);
  group->addChild(nodes[2]);
  root->addChild(group);
  root->addChild(nodes[3]);
  NxCallbackAction action;
  for (int pass = 0; pass < 2; ++pass) { // The second starts as the first did.
    action.apply(root.get());
    EXPECT_EQ(nodes[0]->seen, 0);
    EXPECT_EQ(nodes[1]->seen, 1);
    EXPECT_EQ(nodes[2]->seen, 1);
    EXPECT_EQ(nodes[3]->seen, 3);
    EXPECT_EQ(nodes[3]->seenList, (std::vector<int>{1, 3}));
  }
}

TEST_F(NxActionTest, StateOfAnUnseparatedRootDoesNotReachTheNextTraversal) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  NxCallbackAction action;
  action.apply(node.get());
  action.apply(node.get());
  EXPECT_EQ(node->seen, 0);
  EXPECT_EQ(node->seenList, std::vector<int>());
}

TEST_F(NxActionTest, SwitchSelectsNoneOneOrAll) {
  const NbRefPtr<NxSwitch> node(new NxSwitch);
  TestNumber* const children[2] = {new TestNumber, new TestNumber};
  node->addChild(children[0]);
  node->addChild(children[1]);
  NxCallbackAction action;
  struct Row {
    int which, first, second;
  };
  for (const Row& row : {Row{-1, 0, 0}, Row{0, 1, 0}, Row{1, 0, 1}, Row{-3, 1, 1}, Row{2, 0, 0}, Row{-2, 0, 0}}) {
    children[0]->numActions = children[1]->numActions = 0;
    node->whichChild = row.which;
    action.apply(node.get());
    EXPECT_EQ(children[0]->numActions, row.first) << row.which;
    EXPECT_EQ(children[1]->numActions, row.second) << row.which;
  }
}

TEST_F(NxActionTest, SearchByTypeNameAndNode) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSeparator* const inner = new NxSeparator;
  TestNumber* const a = new TestNumber;
  TestNumber* const b = new TestNumber;
  root->addChild(a);
  root->addChild(inner);
  inner->addChild(b);
  b->setName("b");
  NxSearchAction search;
  search.setType(TestNode::getClassTypeId());
  search.apply(root.get());
  EXPECT_EQ(search.getPath()->getTail(), a);
  search.setInterest(NxSearchAction::LAST);
  search.apply(root.get());
  ASSERT_EQ(search.getPath()->getLength(), 3);
  EXPECT_EQ(search.getPath()->getTail(), b);
  EXPECT_EQ(search.getPath()->getIndex(1), 1);
  search.setInterest(NxSearchAction::ALL);
  search.apply(root.get());
  EXPECT_EQ(search.getPaths().size(), 2u);
  search.setType(TestNode::getClassTypeId(), false);
  search.apply(root.get());
  EXPECT_FALSE(search.isFound());
  search.reset();
  search.setName("b");
  search.apply(root.get());
  EXPECT_EQ(search.getPath()->getTail(), b);
  search.setNode(a);
  search.apply(root.get());
  EXPECT_FALSE(search.isFound()) << "a has another name";
}

TEST_F(NxActionTest, SearchLooksIntoNeitherHiddenNorUnselectedChildren) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  TestHiding* const hiding = new TestHiding;
  NxSwitch* const choice = new NxSwitch;
  TestNumber* const unselected = new TestNumber;
  root->addChild(hiding);
  root->addChild(choice);
  choice->addChild(unselected);
  NxSearchAction search;
  search.setNode(hiding->hidden);
  search.setSearchingAll(true);
  search.apply(root.get());
  EXPECT_FALSE(search.isFound());
  search.setNode(unselected);
  search.apply(root.get());
  EXPECT_TRUE(search.isFound());
  search.setSearchingAll(false);
  search.apply(root.get());
  EXPECT_FALSE(search.isFound());
}

TEST_F(NxActionTest, PathHidesWhatANodeHidesAndFullPathShowsIt) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  TestHiding* const hiding = new TestHiding;
  root->addChild(new TestNumber);
  root->addChild(hiding);
  const NbRefPtr<NxPath> path(NxPath::create(root));
  path->append(hiding);
  path->append(0);
  EXPECT_EQ(path->getLength(), 2);
  EXPECT_EQ(path->getTail(), hiding);
  EXPECT_EQ(path->getNode(2), nullptr);
  EXPECT_FALSE(path->containsNode(hiding->hidden));
  const auto* full = static_cast<const NxFullPath*>(path.get());
  EXPECT_EQ(full->getLength(), 3);
  EXPECT_EQ(full->getTail(), hiding->hidden);
  EXPECT_EQ(full->getNodeFromTail(2), root.get());
  EXPECT_EQ(full->getIndex(1), 1);
  const NbRefPtr<NxPath> copy(path->copy());
  EXPECT_EQ(*copy, *path);
  copy->truncate(2);
  EXPECT_NE(*copy, *path);
  copy->append(7);
  copy->append(root.get());
  EXPECT_EQ(takeTexts().size(), 2u);
  EXPECT_EQ(copy->getFullPath()->getLength(), 2);
}

TEST_F(NxActionTest, AlongAPathOnlyWhatChangesTheStateIsWalkedBesideIt) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  TestNumber* const before = new TestNumber;
  NxSeparator* const sealed = new NxSeparator;
  TestNumber* const inSealed = new TestNumber;
  NxGroup* const onPath = new NxGroup;
  TestNumber* const tail = new TestNumber;
  TestNumber* const after = new TestNumber;
  root->addChild(before);
  root->addChild(sealed);
  sealed->addChild(inSealed);
  root->addChild(onPath);
  onPath->addChild(tail);
  onPath->addChild(after);
  const NbRefPtr<NxPath> path(NxPath::create(root));
  path->append(onPath);
  path->append(tail);
  NxCallbackAction action;
  action.apply(path.get());
  EXPECT_EQ(before->numActions, 1);
  EXPECT_EQ(inSealed->numActions, 0);
  EXPECT_EQ(tail->numActions, 1);
  EXPECT_EQ(after->numActions, 0);
  path->truncate(2);
  action.apply(path.get());
  EXPECT_EQ(after->numActions, 1) << "below the end of the path all is walked";
}

TEST_F(NxActionTest, MatrixAlongAPathMultipliesWhatStandsBeforeTheTail) {
  const auto makeMove = [](float x) {
    TestProbe* const node = new TestProbe;
    node->function = [x](NxAction* action) {
      if (action->getTypeId() == NxGetMatrixAction::getClassTypeId())
        static_cast<NxGetMatrixAction*>(action)->multLeft(NbMatrix::translation(NbVec3f(x, 0, 0)));
    };
    return node;
  };
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSeparator* const sealed = new NxSeparator;
  NxGroup* const group = new NxGroup;
  TestNumber* const tail = new TestNumber;
  root->addChild(makeMove(1.f));
  sealed->addChild(makeMove(10.f));
  root->addChild(sealed);
  group->addChild(makeMove(100.f));
  root->addChild(group);
  root->addChild(tail);
  root->addChild(makeMove(1000.f));
  const NbRefPtr<NxPath> path(NxPath::create(root));
  path->append(tail);
  NxGetMatrixAction action;
  action.apply(path.get());
  EXPECT_EQ(action.getMatrix().multVecMatrix(NbVec3f()), NbVec3f(101.f, 0.f, 0.f));
  EXPECT_EQ(action.getInverse().multVecMatrix(NbVec3f()), NbVec3f(-101.f, 0.f, 0.f));
  action.apply(root.get());
  EXPECT_TRUE(action.getMatrix().isIdentity());
}

TEST_F(NxActionTest, CallbacksByTypeContinuePruneAndAbort) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSeparator* const inner = new NxSeparator;
  TestNumber* const a = new TestNumber;
  TestNumber* const b = new TestNumber;
  root->addChild(inner);
  inner->addChild(a);
  root->addChild(b);
  struct Record {
    std::string order;
    const NxNode* pruned = nullptr;
    const NxNode* aborted = nullptr;
  } record;
  const auto pre = [](void* data, NxCallbackAction* action, const NxNode* node) {
    auto& r = *static_cast<Record*>(data);
    r.order += "<";
    EXPECT_EQ(action->getCurPathTail(), node);
    EXPECT_EQ(action->getCurPath()->getTail(), node);
    return node == r.pruned    ? NxCallbackAction::PRUNE
           : node == r.aborted ? NxCallbackAction::ABORT
                               : NxCallbackAction::CONTINUE;
  };
  const auto post = [](void* data, NxCallbackAction*, const NxNode*) {
    static_cast<Record*>(data)->order += ">";
    return NxCallbackAction::CONTINUE;
  };
  NxCallbackAction action;
  action.addPreCallback(NxNode::getClassTypeId(), pre, &record);
  action.addPostCallback(NxGroup::getClassTypeId(), post, &record);
  action.apply(root.get());
  EXPECT_EQ(record.order, "<<<><>");
  record = {"", inner, nullptr};
  action.apply(root.get());
  EXPECT_EQ(record.order, "<<<>");
  EXPECT_EQ(a->numActions, 1);
  record = {"", nullptr, a};
  action.apply(root.get());
  EXPECT_EQ(record.order, "<<<");
  EXPECT_EQ(b->numActions, 2);
}

TEST_F(NxActionTest, BoundingBoxTransformsWhatShapesTell) {
  const NbRefPtr<TestProbe> shape(new TestProbe);
  shape->function = [](NxAction* action) {
    EXPECT_EQ(NxViewportRegionElement::get(action->getState()).getWindowSize()[0], 320);
    auto* const box = static_cast<NxGetBoundingBoxAction*>(action);
    const NbMatrix matrix = NbMatrix::scaling(NbVec3f(2, 2, 2)) * NbMatrix::translation(NbVec3f(1, 0, 0));
    box->extendBy(NbBox3f(0, 0, 0, 1, 1, 1), matrix);
    box->extendBy(NbBox3f());
    box->setCenter(NbVec3f(1, 0, 0), matrix);
  };
  NxGetBoundingBoxAction action;
  action.setViewportRegion(NbViewportRegion(320, 200));
  action.apply(shape.get());
  EXPECT_EQ(action.getBoundingBox(), NbBox3f(1, 0, 0, 3, 2, 2));
  EXPECT_EQ(action.getCenter(), NbVec3f(3, 0, 0));
  const NbRefPtr<NxSeparator> nothing(new NxSeparator);
  action.apply(nothing.get());
  EXPECT_TRUE(action.getBoundingBox().isEmpty());
}

TEST_F(NxActionTest, CountsAndHandledEventsStartAgainWithEachTraversal) {
  const NbRefPtr<TestProbe> shape(new TestProbe);
  shape->function = [](NxAction* action) {
    if (action->getTypeId() == NxHandleEventAction::getClassTypeId()) {
      static_cast<NxHandleEventAction*>(action)->setHandled();
      return;
    }
    auto* const count = static_cast<NxGetPrimitiveCountAction*>(action);
    count->addNumTriangles(3'000'000'000);
    count->addNumLines(2);
    count->addNumPoints(1);
  };
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  root->addChild(shape);
  TestNumber* const after = new TestNumber;
  root->addChild(after);
  NxGetPrimitiveCountAction count;
  count.apply(root.get());
  count.apply(root.get());
  EXPECT_EQ(count.getTriangleCount(), 3'000'000'000);
  EXPECT_EQ(count.getLineCount(), 2);
  EXPECT_EQ(count.getPointCount(), 1);
  NxHandleEventAction event;
  after->numActions = 0;
  event.apply(root.get());
  EXPECT_TRUE(event.isHandled());
  EXPECT_EQ(after->numActions, 0);
  shape->function = nullptr;
  event.apply(root.get());
  EXPECT_FALSE(event.isHandled());
}

TEST_F(NxActionTest, PickedPointsOwnTheirDetails) {
  const NbRefPtr<TestHiding> hiding(new TestHiding);
  TestProbe* const shape = new TestProbe;
  static_cast<NxSeparator*>(hiding->hidden)->addChild(shape);
  shape->function = [shape](NxAction* action) {
    NxPickedPoint* const point = static_cast<NxRayPickAction*>(action)->addIntersection(NbVec3f(1, 2, 3));
    auto* const detail = new NxFaceDetail;
    detail->setFaceIndex(5);
    detail->setPoints({NxPointDetail(), NxPointDetail(), NxPointDetail()});
    point->setDetail(detail, shape);
  };
  NxRayPickAction action;
  action.apply(hiding.get());
  const NxPickedPoint* const point = action.getUnsortedPickedPoint(0);
  ASSERT_NE(point, nullptr);
  EXPECT_EQ(action.getUnsortedPickedPoint(1), nullptr);
  EXPECT_EQ(action.getUnsortedPickedPoint(-1), nullptr);
  EXPECT_EQ(point->getPath()->getTail(), hiding.get());
  EXPECT_EQ(point->getPath()->getFullPath()->getTail(), shape);
  ASSERT_NE(point->getDetail(), nullptr);
  ASSERT_TRUE(point->getDetail()->isOfType(NxFaceDetail::getClassTypeId()));
  EXPECT_EQ(static_cast<const NxFaceDetail*>(point->getDetail())->getFaceIndex(), 5);
  EXPECT_EQ(point->getDetail(hiding), nullptr);
  NxPickedPoint copy(*point);
  copy.setDetail(new NxLineDetail, hiding);
  copy.setDetail(nullptr, shape);
  EXPECT_EQ(copy.getDetail(), nullptr);
  EXPECT_NE(copy.getDetail(hiding), nullptr);
  EXPECT_NE(point->getDetail(), nullptr);
  const NbRefPtr<TestNumber> stranger(new TestNumber);
  copy.setDetail(new NxLineDetail, stranger);
  EXPECT_EQ(takeTexts().size(), 1u);
}

TEST_F(NxActionTest, ExceptionLeavesActionAndDatabaseUsable) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  TestProbe* const node = new TestProbe;
  root->addChild(node);
  node->function = [](NxAction*) { throw std::runtime_error("broken"); };
  NxCallbackAction action;
  EXPECT_THROW(action.apply(root.get()), std::runtime_error);
  EXPECT_EQ(action.getState()->getDepth(), 0);
  EXPECT_EQ(root->getRefCount(), 1);
  int calls = 0;
  node->function = [&calls](NxAction*) { ++calls; };
  action.apply(root.get());
  EXPECT_EQ(calls, 1);
}

TEST_F(NxActionTest, NullRootAndNestedUseArePosted) {
  NxCallbackAction action;
  action.apply(static_cast<NxNode*>(nullptr));
  action.apply(static_cast<NxPath*>(nullptr));
  const NbRefPtr<TestProbe> node(new TestProbe);
  int calls = 0;
  node->function = [&calls, &node](NxAction* running) {
    ++calls;
    running->apply(node.get());
  };
  action.apply(node.get());
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(takeTexts(), (std::vector<std::string>{"There is no node to apply the action to.",
                                                   "There is no node to apply the action to.",
                                                   "The action is being applied already."}));
}

TEST_F(NxActionTest, GroupRefusesBadChildrenAndIndices) {
  const NbRefPtr<NxGroup> group(new NxGroup);
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
  group->addChild(nullptr);
  EXPECT_EQ(group->getChild(0), nullptr);
  group->removeChild(0);
  group->removeChild(a);
  group->replaceChild(0, a);
  group->replaceChild(a, b);
  group->insertChild(a, 1);
  EXPECT_EQ(takeTexts().size(), 7u);
  group->addChild(a);
  group->insertChild(b, 0);
  EXPECT_EQ(group->findChild(a), 1);
  group->replaceChild(a, b);
  EXPECT_EQ(group->getChild(1), b.get());
  group->removeChild(b);
  EXPECT_EQ(group->getNumChildren(), 1);
  group->removeAllChildren();
  EXPECT_EQ(b->getRefCount(), 1);
}

TEST_F(NxActionTest, CopyKeepsSharingNamesAndFields) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  TestNumber* const shared = new TestNumber;
  TestNumber* const holder = new TestNumber;
  shared->setName("shared");
  shared->number = 42;
  holder->helper = shared;
  root->addChild(shared);
  root->addChild(shared);
  root->addChild(holder);
  holder->size.connectFrom(&shared->size);
  const NbRefPtr<NxNode> copied(root->copy());
  EXPECT_EQ(copied->getRefCount(), 1);
  auto* const group = static_cast<NxSeparator*>(copied.get());
  ASSERT_EQ(group->getNumChildren(), 3);
  EXPECT_EQ(group->getChild(0), group->getChild(1));
  EXPECT_NE(group->getChild(0), shared);
  auto* const copy = static_cast<TestNumber*>(group->getChild(0));
  EXPECT_EQ(copy->number.getValue(), 42);
  EXPECT_EQ(copy->getName(), NbName("shared"));
  EXPECT_TRUE(copy->fieldsAreEqual(*shared));
  EXPECT_TRUE(copy->size.isDefault());
  auto* const holderCopy = static_cast<TestNumber*>(group->getChild(2));
  EXPECT_EQ(holderCopy->helper.getValue(), copy);
  EXPECT_FALSE(holderCopy->size.isConnected());
  const NbRefPtr<NxNode> connected(holder->copy(true));
  EXPECT_EQ(static_cast<TestNumber*>(connected.get())->size.getConnectedField(), &shared->size);
}
