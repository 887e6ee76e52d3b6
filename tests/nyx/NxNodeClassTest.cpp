// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/fields/NxFieldData.h>
#include <Nyx/nodes/NxSeparator.h>

#include <thread>

using Texts = std::vector<std::string>;

class NxNodeClassTest : public ToolkitTest {};

TEST_F(NxNodeClassTest, TypesFormATreeAndConcreteClassesMakeInstances) {
  EXPECT_TRUE(TestNumber::getClassTypeId().isDerivedFrom(NxNode::getClassTypeId()));
  EXPECT_EQ(TestNumber::getClassTypeId().getParent(), TestNode::getClassTypeId());
  EXPECT_FALSE(TestNode::getClassTypeId().canCreateInstance());
  EXPECT_EQ(TestNode::getClassTypeId().createInstance(), nullptr);
  const NbRefPtr<NxNode> node(static_cast<NxNode*>(NxType::fromName("TestNumber").createInstance()));
  EXPECT_EQ(node->getTypeId(), TestNumber::getClassTypeId());
}

TEST_F(NxNodeClassTest, ToolkitClassesAreBuiltInAndOthersAreNot) {
  const NbRefPtr<TestNumber> own(new TestNumber);
  const NbRefPtr<NxSeparator> toolkits(new NxSeparator);
  EXPECT_EQ(own->getIsBuiltIn(), 0);
  EXPECT_EQ(toolkits->getIsBuiltIn(), 1);
}

TEST_F(NxNodeClassTest, ConstructingBeforeInitClassPostsOnceAndYieldsAWorkingNode) {
  TestNumber::exitClass();
  const NbRefPtr<TestNumber> node(new TestNumber);
  ASSERT_EQ(messages.getMessages().size(), 1u);
  EXPECT_EQ(messages.getMessages()[0].origin, "NX_NODE_CONSTRUCTOR");
  EXPECT_EQ(messages.getMessages()[0].className, std::string("NxDebugError"));
  EXPECT_EQ(messages.getMessages()[0].severity, NxMessage::ERROR);
  EXPECT_EQ(takeTexts(), Texts{"Can't construct a node of type TestNumber until initClass() has been called"});
  EXPECT_FALSE(node->getTypeId().isBad());
  EXPECT_NE(node->getField("size"), nullptr);
  const NbRefPtr<TestNumber> second(new TestNumber);
  EXPECT_EQ(takeTexts(), Texts());
}

TEST_F(NxNodeClassTest, ChildInitialisedBeforeItsParentRegistersTheParentFirst) {
  TestHiding::exitClass();
  TestNumber::exitClass();
  TestNode::exitClass();
  TestNumber::initClass();
  ASSERT_EQ(messages.getMessages().size(), 1u);
  EXPECT_EQ(messages.getMessages()[0].origin, "TestNumber::initClass");
  EXPECT_EQ(takeTexts(), Texts{"TestNumber initialized before parent class TestNode\n"});
  EXPECT_EQ(TestNumber::getClassTypeId().getParent(), NxType::fromName("TestNode"));
  TestHiding::initClass();
}

TEST_F(NxNodeClassTest, SecondExitClassReportsAndHasNoOtherEffect) {
  TestNumber::exitClass();
  EXPECT_TRUE(TestNumber::getClassTypeId().isBad());
  TestNumber::exitClass();
  ASSERT_EQ(messages.getMessages().size(), 1u);
  EXPECT_EQ(messages.getMessages()[0].origin, "TestNumber::exitClass");
  EXPECT_EQ(takeTexts(), Texts{"Unable to remove type (TestNumber) for this class. Check exitClass() method is "
                               "implemented and is called only once.\n"});
  EXPECT_TRUE(TestNumber::getClassTypeId().isBad());
  TestNumber::initClass();
}

TEST_F(NxNodeClassTest, FailedExitKeepsTypeAndFieldTable) {
  NbRefPtr<TestNumber> node(new TestNumber);
  const NxType type = TestNumber::getClassTypeId();
  NxType::removeType("TestNumber");
  TestNumber::exitClass();
  EXPECT_EQ(takeTexts().size(), 1u);
  EXPECT_EQ(TestNumber::getClassTypeId(), type);
  EXPECT_NE(TestNumber::getNodeClass().fieldData, nullptr);
  TestNumber::initClass();
}

TEST_F(NxNodeClassTest, FirstInstanceEndsWithTheSecondInstanceAndComesBackAfterExit) {
  EXPECT_EQ(TestNumber::getNodeClass().firstInstance, 1);
  EXPECT_EQ(TestNumber::getNodeClass().fieldData, nullptr);
  {
    const NbRefPtr<TestNumber> first(new TestNumber);
    EXPECT_EQ(TestNumber::getNodeClass().firstInstance, 1);
    const NbRefPtr<TestNumber> second(new TestNumber);
    EXPECT_EQ(TestNumber::getNodeClass().firstInstance, 0);
    EXPECT_EQ(second->getField("size"), &second->size);
  }
  TestNumber::exitClass();
  EXPECT_EQ(TestNumber::getNodeClass().firstInstance, 1);
  EXPECT_EQ(TestNumber::getNodeClass().fieldData, nullptr);
  EXPECT_EQ(TestNumber::getNodeClass().parentFieldData, nullptr);
  TestNumber::initClass();
  const NbRefPtr<TestNumber> again(new TestNumber);
  EXPECT_EQ(again->getField("size"), &again->size);
}

TEST_F(NxNodeClassTest, ActionMethodIndexGrowsWithEachRegistration) {
  const int before = NxNode::getNextActionMethodIndex();
  TestNumber::exitClass();
  TestNumber::initClass();
  EXPECT_EQ(TestNumber::getClassTypeId().getData(), before);
  EXPECT_EQ(NxNode::getNextActionMethodIndex(), before + 1);
  // Registered again without exitClass, the class knows its parent's table already and takes no further index.
  TestNumber::initClass();
  EXPECT_EQ(NxNode::getNextActionMethodIndex(), before + 1);
  EXPECT_EQ(NxType::fromName("TestNumber"), TestNumber::getClassTypeId());
}

TEST_F(NxNodeClassTest, RenderModeIsSetAndInheritanceOfTheFlagIsHandedDown) {
  EXPECT_EQ(TestNumber::getClassRenderEngineMode().getRenderMode(), NbRenderEngineMode::NYX_RENDERING);
  EXPECT_FALSE(TestNumber::getClassRenderEngineMode().isChildrenInherit());
  TestNode::getClassRenderEngineMode().setChildrenInherit(true);
  TestNumber::exitClass();
  TestNumber::initClass();
  EXPECT_TRUE(TestNumber::getClassRenderEngineMode().isChildrenInherit());
  TestNode::getClassRenderEngineMode().setChildrenInherit(false);
  TestNumber::getClassRenderEngineMode().setChildrenInherit(false);
}

TEST_F(NxNodeClassTest, FieldsStandInTheOrderOfDeclarationParentsFirst) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  std::vector<NxField*> fields;
  EXPECT_EQ(node->getFields(fields), 5);
  EXPECT_EQ(fields, (std::vector<NxField*>{&node->number, &node->kind, &node->size, &node->data, &node->helper}));
  for (NxField* field : fields) {
    EXPECT_TRUE(field->isDefault());
    EXPECT_EQ(field->getContainer(), node.get());
    EXPECT_EQ(field->getFieldType(), 5);
  }
  NbName name;
  EXPECT_TRUE(node->getFieldName(&node->data, name));
  EXPECT_EQ(name, NbName("data"));
  EXPECT_FALSE(node->getFieldName(nullptr, name));
}

namespace {

/// Forgets NX_NODE_CONSTRUCTOR and the enumerators.
class TestForgetful : public TestNode {
  NX_NODE_HEADER(TestForgetful);

public:
  NxSFEnum kind;
  TestForgetful() {
    NX_NODE_ADD_FIELD(kind, (0));
    NX_SET_SF_ENUM_TYPE(kind, Kind);
  }
};

NX_NODE_SOURCE(TestForgetful, TestNode)

} // namespace

TEST_F(NxNodeClassTest, ForgottenMacrosAreReportedAndRepaired) {
  TestForgetful::initClass();
  const NbRefPtr<TestForgetful> node(new TestForgetful);
  ASSERT_EQ(messages.getMessages().size(), 2u);
  EXPECT_EQ(messages.getMessages()[0].origin, __FILE__);
  EXPECT_EQ(messages.getMessages()[0].text, "Instance not properly constructed.\nDid you forget to put "
                                            "NX_NODE_CONSTRUCTOR() in the constructor?");
  EXPECT_EQ(messages.getMessages()[1].origin, "NX_SET_SF_ENUM_TYPE");
  const std::string text = messages.getMessages()[1].text;
  EXPECT_EQ(text.find("Field kind ("), 0u) << text;
  EXPECT_NE(text.find("): Did you forget to use NX_NODE_DEFINE_ENUM_VALUE(Kind, ...)?"), std::string::npos) << text;
  messages.clear();
  EXPECT_EQ(node->getField("kind"), &node->kind);
  TestForgetful::exitClass();
}

TEST_F(NxNodeClassTest, FieldDataOfAClassWithoutInstancesIsReportedAndMade) {
  EXPECT_NE(TestNumber::getNodeClass().getFieldData(), nullptr);
  ASSERT_EQ(messages.getMessages().size(), 1u);
  EXPECT_EQ(messages.getMessages()[0].origin, "TestNumber");
  EXPECT_EQ(takeTexts(), Texts{"Instance not properly constructed.\nDid you forget to put NX_NODE_CONSTRUCTOR() in "
                               "the constructor?"});
}

TEST_F(NxNodeClassTest, ThreadsMayConstructInstancesOfOneClassAtTheSameTime) {
  constexpr int numThreads = 4, numNodes = 200;
  std::vector<std::thread> threads;
  std::vector<int> complete(numThreads, 0);
  for (int t = 0; t < numThreads; ++t)
    threads.emplace_back([t, &complete] {
      for (int i = 0; i < numNodes; ++i) {
        // Not a TestNumber: the count of those alive is no atomic.
        const NbRefPtr<TestHiding> node(new TestHiding);
        complete[static_cast<size_t>(t)] += node->getField("number") == &node->number;
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(complete, std::vector<int>(numThreads, numNodes));
}
