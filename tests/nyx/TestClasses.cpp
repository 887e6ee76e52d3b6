// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/misc/NxChildList.h>
#include <Nyx/misc/NxState.h>
#include <Nyx/nodes/NxSeparator.h>

NX_ELEMENT_SOURCE(TestNumberElement, NxReplacedElement)

void TestNumberElement::init(NxState* state) {
  NxReplacedElement::init(state);
  number = 0;
}

void TestNumberElement::set(NxState* state, NxNode* node, int value) {
  if (NxElement* element = getElement(state, getClassTypeId(), getClassStackIndex(), node))
    static_cast<TestNumberElement*>(element)->number = value;
}

int TestNumberElement::get(NxState* state) {
  const NxElement* element = getConstElement(state, getClassTypeId(), getClassStackIndex());
  return element ? static_cast<const TestNumberElement*>(element)->number : -1;
}

NX_ELEMENT_SOURCE(TestListElement, NxAccumulatedElement)

void TestListElement::init(NxState* state) {
  NxAccumulatedElement::init(state);
  numbers.clear();
}

void TestListElement::push(NxState* state) {
  NxAccumulatedElement::push(state);
  numbers = static_cast<const TestListElement*>(getNextInStack())->numbers;
}

void TestListElement::add(NxState* state, const NxNode* node, int value) {
  if (NxElement* element = getElement(state, getClassTypeId(), getClassStackIndex())) {
    static_cast<TestListElement*>(element)->addNodeId(node);
    static_cast<TestListElement*>(element)->numbers.push_back(value);
  }
}

std::vector<int> TestListElement::get(NxState* state) {
  const NxElement* element = getConstElement(state, getClassTypeId(), getClassStackIndex());
  return element ? static_cast<const TestListElement*>(element)->numbers : std::vector<int>();
}

NX_NODE_ABSTRACT_SOURCE(TestNode, NxNode)

TestNode::TestNode() {
  NX_NODE_CONSTRUCTOR(TestNode);
  NX_NODE_ADD_FIELD(number, (7));
}

void TestNode::GLRender(NxGLRenderAction* action) { doAction(action); }
void TestNode::callback(NxCallbackAction* action) { doAction(action); }
void TestNode::getBoundingBox(NxGetBoundingBoxAction* action) { doAction(action); }
void TestNode::getMatrix(NxGetMatrixAction* action) { doAction(action); }
void TestNode::handleEvent(NxHandleEventAction* action) { doAction(action); }
void TestNode::pick(NxPickAction* action) { doAction(action); }
void TestNode::rayPick(NxRayPickAction* action) { doAction(action); }
void TestNode::getPrimitiveCount(NxGetPrimitiveCountAction* action) { doAction(action); }
void TestNode::distribute(NxDistributeAction* action) { doAction(action); }

NX_NODE_SOURCE(TestNumber, TestNode)

int TestNumber::numAlive = 0;

TestNumber::TestNumber() {
  NX_NODE_CONSTRUCTOR(TestNumber);
  NX_NODE_ADD_FIELD(kind, (SMALL));
  NX_NODE_ADD_FIELD(size, (1.5f));
  NX_NODE_ADD_EMPTY_FIELD(data);
  NX_NODE_ADD_FIELD(helper, (nullptr));
  NX_NODE_DEFINE_ENUM_VALUE(Kind, SMALL);
  NX_NODE_DEFINE_ENUM_VALUE(Kind, LARGE);
  NX_SET_SF_ENUM_TYPE(kind, Kind);
  ++numAlive;
}

TestNumber::~TestNumber() { --numAlive; }

void TestNumber::doAction(NxAction* action) {
  ++numActions;
  NxState* const state = action->getState();
  seen = TestNumberElement::get(state);
  seenList = TestListElement::get(state);
  TestNumberElement::set(state, this, number.getValue());
  TestListElement::add(state, this, number.getValue());
}

NX_NODE_SOURCE(TestHiding, TestNode)

TestHiding::TestHiding()
    : hidden(new NxSeparator)
    , m_children(std::make_unique<NxChildList>(this, 1)) {
  NX_NODE_CONSTRUCTOR(TestHiding);
  m_children->insert(hidden, 0);
}

TestHiding::~TestHiding() = default;

void TestHiding::doAction(NxAction* action) { m_children->traverse(action); }

NxChildList* TestHiding::getChildren() const { return m_children.get(); }

void ToolkitTest::SetUp() {
  NxDB::init();
  TestNumberElement::initClass();
  TestListElement::initClass();
  TestNode::initClass();
  TestNumber::initClass();
  TestHiding::initClass();
}

void ToolkitTest::TearDown() {
  TestHiding::exitClass();
  TestNumber::exitClass();
  TestNode::exitClass();
  TestListElement::exitClass();
  TestNumberElement::exitClass();
  NxDB::finish();
  EXPECT_EQ(takeTexts(), std::vector<std::string>());
  EXPECT_EQ(TestNumber::numAlive, 0);
}

std::vector<std::string> ToolkitTest::takeTexts() {
  std::vector<std::string> texts;
  for (const NxMessage& message : messages.getMessages())
    texts.push_back(message.text);
  messages.clear();
  return texts;
}
