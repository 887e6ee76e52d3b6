// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NxMessageCollector.h>
#include <Nyx/elements/NxAccumulatedElement.h>
#include <Nyx/elements/NxReplacedElement.h>
#include <Nyx/fields/NxMFFloat.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/fields/NxSFNode.h>
#include <Nyx/misc/NxDB.h>
#include <Nyx/nodes/NxNode.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// An element with one number.
class TestNumberElement : public NxReplacedElement {
  NX_ELEMENT_HEADER(TestNumberElement);

public:
  static void set(NxState* state, NxNode* node, int value);
  /// The number, or -1 where the action does not carry the element.
  static int get(NxState* state);

  void init(NxState* state) override;
  int number = 0;
};

/// An element with a list of numbers.
class TestListElement : public NxAccumulatedElement {
  NX_ELEMENT_HEADER(TestListElement);

public:
  static void add(NxState* state, const NxNode* node, int value);
  static std::vector<int> get(NxState* state);

  void init(NxState* state) override;
  void push(NxState* state) override;
  std::vector<int> numbers;
};

/// An abstract class between NxNode and the others: every action but search and write comes to doAction.
class TestNode : public NxNode {
  NX_NODE_ABSTRACT_HEADER(TestNode);

public:
  NxSFInt32 number; ///< Default 7.

  void GLRender(NxGLRenderAction* action) override;
  void callback(NxCallbackAction* action) override;
  void getBoundingBox(NxGetBoundingBoxAction* action) override;
  void getMatrix(NxGetMatrixAction* action) override;
  void handleEvent(NxHandleEventAction* action) override;
  void pick(NxPickAction* action) override;
  void rayPick(NxRayPickAction* action) override;
  void getPrimitiveCount(NxGetPrimitiveCountAction* action) override;
  void distribute(NxDistributeAction* action) override;

protected:
  TestNode();
};

/// Sets TestNumberElement, and notes what it saw.
class TestNumber : public TestNode {
  NX_NODE_HEADER(TestNumber);

public:
  enum Kind { SMALL = 3, LARGE = 5 };

  NxSFEnum kind;   ///< Default SMALL.
  NxSFFloat size;  ///< Default 1.5.
  NxMFFloat data;  ///< Empty by default.
  NxSFNode helper; ///< Null by default.

  TestNumber();
  void doAction(NxAction* action) override;

  int numActions = 0;
  int seen = -2; ///< The element's number before this node set it.
  std::vector<int> seenList;
  static int numAlive;

protected:
  ~TestNumber() override;
};

/// A node that hides its child.
class TestHiding : public TestNode {
  NX_NODE_HEADER(TestHiding);

public:
  TestHiding();
  void doAction(NxAction* action) override;
  NxChildList* getChildren() const override;
  NxNode* hidden;

protected:
  ~TestHiding() override;

private:
  std::unique_ptr<NxChildList> m_children;
};

/// Starts the toolkit, registers the classes above, and collects messages: a test fails on one it did not expect.
class ToolkitTest : public testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;

  /// Takes the texts of the messages so far.
  std::vector<std::string> takeTexts();

  NxMessageCollector messages;
};
