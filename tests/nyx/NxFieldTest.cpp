// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/fields/NxMFInt32.h>
#include <Nyx/fields/NxMFNode.h>
#include <Nyx/fields/NxMFString.h>
#include <Nyx/fields/NxMFVec3f.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFColor.h>
#include <Nyx/fields/NxSFDouble.h>
#include <Nyx/fields/NxSFImage.h>
#include <Nyx/fields/NxSFString.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <numeric>

class NxFieldTest : public ToolkitTest {};

TEST_F(NxFieldTest, EachChangeTakesANewIdAndEndsTheDefault) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  const uint64_t before = node->size.getChangeId();
  node->size = 1.5f;
  EXPECT_GT(node->size.getChangeId(), before) << "also for an equal value";
  EXPECT_FALSE(node->size.isDefault());
  const uint64_t after = node->size.getChangeId();
  node->size.setIgnored(true);
  EXPECT_GT(node->size.getChangeId(), after);
}

TEST_F(NxFieldTest, UserMemoryIsUsedAsItIsUntilTheFirstOwnChange) {
  const std::vector<NbVec3f> user{{1, 2, 3}, {4, 5, 6}};
  NxMFVec3f field;
  field.setValuesPointer(2, user.data());
  EXPECT_EQ(field.getValues(), user.data());
  EXPECT_TRUE(field.isUserMemory());
  EXPECT_EQ(field[1], NbVec3f(4, 5, 6));
  field.set1Value(3, NbVec3f(7, 8, 9));
  EXPECT_FALSE(field.isUserMemory());
  ASSERT_EQ(field.getNum(), 4);
  EXPECT_EQ(field[0], NbVec3f(1, 2, 3));
  EXPECT_EQ(field[2], NbVec3f()) << "the gap is filled";
  EXPECT_EQ(field[3], NbVec3f(7, 8, 9));
  EXPECT_EQ(user[1], NbVec3f(4, 5, 6)) << "the user's memory is not written to";
}

TEST_F(NxFieldTest, MultipleValuesGrowShrinkAndDelete) {
  NxMFInt32 field;
  EXPECT_EQ(field.getValues(), nullptr);
  const int32_t values[] = {1, 2, 3, 4, 5};
  field.setValues(0, 5, values);
  field.deleteValues(1, 2);
  ASSERT_EQ(field.getNum(), 3);
  EXPECT_EQ(field[1], 4);
  EXPECT_EQ(field.find(5), 2);
  EXPECT_EQ(field.find(9), -1);
  field.setNum(1);
  EXPECT_EQ(field.getNum(), 1);
  field.deleteValues(0);
  EXPECT_EQ(field.getNum(), 0);
  field.setValue(8);
  int32_t* editable = field.startEditing();
  editable[0] = 9;
  const uint64_t id = field.getChangeId();
  field.finishEditing();
  EXPECT_GT(field.getChangeId(), id);
  EXPECT_EQ(field[0], 9);
}

TEST_F(NxFieldTest, ValuesMayComeFromTheFieldItself) {
  NxMFInt32 field;
  std::vector<int32_t> values(100);
  std::iota(values.begin(), values.end(), 0);
  field.setValues(0, 100, values.data());
  field.setValues(100, 50, field.getValues(50));
  ASSERT_EQ(field.getNum(), 150);
  EXPECT_EQ(field[149], 99);
  field.setValue(field[42]);
  EXPECT_EQ(field[0], 42);
}

TEST_F(NxFieldTest, BadRangesArePostedAndChangeNothing) {
  NxMFInt32 field;
  field.setValue(1);
  field.setNum(-1);
  field.setValues(-1, 1, field.getValues());
  field.setValues(0, 1, nullptr);
  field.deleteValues(0, 2);
  field.deleteValues(2);
  field.setValuesPointer(3, nullptr);
  EXPECT_EQ(field.getNum(), 1);
  EXPECT_EQ(takeTexts(), (std::vector<std::string>{
                             "The number of values cannot be -1.",
                             "Cannot set 1 values from index -1 on.",
                             "Cannot set 1 values from index 0 on, given none.",
                             "Cannot delete 2 of 1 values from index 0 on.",
                             "Cannot delete -1 of 1 values from index 2 on.",
                             "Cannot use 3 values at a null pointer.",
                         }));
}

// A copy of a million values costs milliseconds; a thousand changes by pointer must not come near that.
TEST_F(NxFieldTest, ChangingAMillionValuesByPointerDoesNotCopyThem) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  const std::vector<float> values(1000000, 1.f);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 1000; ++i)
    node->data.setValuesPointer(1000000, values.data());
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(node->data.getValues(), values.data());
  EXPECT_LT(elapsed.count(), 0.2);
}

TEST_F(NxFieldTest, EnumeratorsAreCheckedOnceTheyAreDeclared) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  EXPECT_EQ(node->kind.getNumEnums(), 2);
  node->kind = TestNumber::LARGE;
  EXPECT_EQ(node->kind.getValue(), 5);
  node->kind.setValue(NbName("SMALL"));
  EXPECT_EQ(node->kind.getValueAs<TestNumber::Kind>(), TestNumber::SMALL);
  node->kind.setValue(4);
  node->kind.setValue(NbName("HUGE"));
  EXPECT_EQ(node->kind.getValue(), 3);
  EXPECT_EQ(takeTexts(),
            (std::vector<std::string>{"4 is none of the 2 enumerators.", "HUGE is none of the 2 enumerators."}));
}

TEST_F(NxFieldTest, ConnectedFieldFollowsUntilDisconnected) {
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber), c(new TestNumber);
  EXPECT_TRUE(b->size.connectFrom(&a->size));
  EXPECT_TRUE(c->size.connectFrom(&b->size));
  EXPECT_EQ(b->size.getValue(), 1.5f);
  const uint64_t id = c->getNodeId();
  a->size = 4.f;
  EXPECT_EQ(b->size.getValue(), 4.f);
  EXPECT_EQ(c->size.getValue(), 4.f);
  EXPECT_GT(c->getNodeId(), id) << "the follower's node changes too";
  b->size.disconnect();
  a->size = 5.f;
  EXPECT_EQ(c->size.getValue(), 4.f);
}

TEST_F(NxFieldTest, RingOfConnectionsEnds) {
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
  b->size.connectFrom(&a->size);
  a->size.connectFrom(&b->size);
  a->size = 2.f;
  EXPECT_EQ(b->size.getValue(), 2.f);
  b->size = 3.f;
  EXPECT_EQ(a->size.getValue(), 3.f);
}

TEST_F(NxFieldTest, ConnectionToAnotherTypeIsRefused) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  EXPECT_FALSE(node->size.connectFrom(&node->number));
  EXPECT_FALSE(node->size.connectFrom(&node->size));
  EXPECT_FALSE(node->size.connectFrom(nullptr));
  EXPECT_EQ(takeTexts(), (std::vector<std::string>{"A field of type NxSFFloat cannot follow NxSFInt32.",
                                                   "A field of type NxSFFloat cannot follow itself.",
                                                   "A field of type NxSFFloat cannot follow a null field."}));
}

TEST_F(NxFieldTest, MasterThatDiesLeavesTheFollowerItsValue) {
  NxSFDouble follower;
  {
    NxSFDouble master;
    master = 2.5;
    follower.connectFrom(&master);
  }
  EXPECT_FALSE(follower.isConnected());
  EXPECT_EQ(follower.getValue(), 2.5);
}

TEST_F(NxFieldTest, NodeFieldKeepsItsNodeAndPassesItsChangesOn) {
  const NbRefPtr<TestNumber> outer(new TestNumber);
  TestNumber* const inner = new TestNumber;
  outer->helper = inner;
  EXPECT_EQ(inner->getRefCount(), 1);
  const uint64_t id = outer->getNodeId();
  inner->size = 2.f;
  EXPECT_GT(outer->getNodeId(), id);
  outer->helper = inner;
  EXPECT_EQ(inner->getRefCount(), 1);
  outer->helper = nullptr;
  EXPECT_EQ(TestNumber::numAlive, 1);
}

TEST_F(NxFieldTest, NodeListField) {
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
  NxMFNode field;
  field.addNode(a);
  field.addNode(b);
  field.addNode(a);
  EXPECT_EQ(field.getNum(), 3);
  EXPECT_EQ(field.findNode(b), 1);
  field.removeNode(0);
  EXPECT_EQ(field[1], a.get());
  field.addNode(nullptr);
  field.removeNode(5);
  EXPECT_EQ(takeTexts(), (std::vector<std::string>{"A null node cannot be a value.", "The index 5 is not in 0..1."}));
  field.removeAllNodes();
  EXPECT_EQ(a->getRefCount(), 1);
}

TEST_F(NxFieldTest, ImageCopiesOrUsesThePixelsAndRefusesBadSizes) {
  uint8_t pixels[] = {1, 2, 3, 4, 5, 6};
  NxSFImage field;
  field.setValue(NbVec2i32(2, 1), 3, pixels);
  NbVec2i32 size;
  int components;
  const uint8_t* stored = field.getValue(size, components);
  EXPECT_NE(stored, pixels);
  EXPECT_EQ(size, NbVec2i32(2, 1));
  EXPECT_EQ(components, 3);
  EXPECT_EQ(stored[5], 6);
  NxSFImage follower;
  follower.connectFrom(&field);
  field.setValue(NbVec2i32(1, 2), 3, pixels, NxSFImage::NO_COPY);
  EXPECT_EQ(follower.getValue(size, components), pixels);
  EXPECT_EQ(size, NbVec2i32(1, 2));
  field.setValue(NbVec2i32(-1, 2), 3, pixels);
  field.setValue(NbVec2i32(1, 2), 5, pixels);
  EXPECT_EQ(takeTexts().size(), 2u);
  EXPECT_EQ(field.getValue(size, components), pixels);
}

namespace {

class TestPicky : public TestNode {
  NX_NODE_HEADER(TestPicky);

public:
  TestPicky() { NX_NODE_CONSTRUCTOR(TestPicky); }
  bool validateNewFieldValue(NxField* field, const void* newValue) override {
    return field != &number || *static_cast<const int32_t*>(newValue) >= 0;
  }
};
NX_NODE_SOURCE(TestPicky, TestNode)

/// One body for each field class: the text of any of its values gives that value back.
template <class Field>
void expectTextRoundTrip(const Field& field, const std::string& text) {
  EXPECT_EQ(field.get(), text);
  Field read;
  EXPECT_TRUE(read.set(text)) << text;
  EXPECT_TRUE(read.isSame(field)) << text << " became " << read.get();
}

} // namespace

TEST_F(NxFieldTest, ContainerMayRefuseAValue) {
  TestPicky::initClass();
  {
    const NbRefPtr<TestPicky> node(new TestPicky);
    node->number = 5;
    node->number = -1;
    EXPECT_EQ(node->number.getValue(), 5);
  }
  TestPicky::exitClass();
}

TEST_F(NxFieldTest, TextRoundTrip) {
  NxSFBool flag;
  flag = true;
  expectTextRoundTrip(flag, "TRUE");
  NxSFFloat real;
  real = 0.1f;
  expectTextRoundTrip(real, "0.1");
  NxSFString text;
  text = NbString("say \"hi\" \\ there");
  expectTextRoundTrip(text, "\"say \\\"hi\\\" \\\\ there\"");
  NxSFColor color;
  color.setValue(1.f, 0.5f, 0.25f);
  expectTextRoundTrip(color, "1 0.5 0.25");
  NxMFVec3f vectors;
  expectTextRoundTrip(vectors, "[ ]");
  vectors.set1Value(0, NbVec3f(1, 2, 3));
  expectTextRoundTrip(vectors, "1 2 3");
  vectors.set1Value(1, NbVec3f(-1.5f, 2, 3e20f));
  expectTextRoundTrip(vectors, "[ 1 2 3, -1.5 2 3e+20 ]");
  NxMFString texts;
  texts.set1Value(0, "a");
  texts.set1Value(1, "b c");
  expectTextRoundTrip(texts, "[ \"a\", \"b c\" ]");
  const float floats[] = {0.5f, -2.f};
  NxSFImage image;
  image.setValue(NbVec2i32(2, 1), 1, floats, NxSFImage::COPY, NxImageValue::FLOAT);
  expectTextRoundTrip(image, "2 1 -1 0.5 -2");
}

TEST_F(NxFieldTest, BadTextLeavesTheValue) {
  NxSFFloat real;
  real = 2.f;
  for (const char* text : {"", "abc", "1 2", "1x"})
    EXPECT_FALSE(real.set(text)) << text;
  EXPECT_EQ(real.getValue(), 2.f);
  NxMFInt32 list;
  list.setValue(4);
  for (const char* text : {"[", "[ 1, 2", "1 ]", "[ 1.5 ]", "[ 1 ] 2", "99999999999"})
    EXPECT_FALSE(list.set(text)) << text;
  EXPECT_EQ(list[0], 4);
  NxSFImage image;
  for (const char* text : {"2 2 1 0 0", "-1 2 1", "100000 100000 4", "1 1 1 256"})
    EXPECT_FALSE(image.set(text)) << text;
}

TEST_F(NxFieldTest, ContainerReadsNamesAndValues) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  EXPECT_TRUE(node->set("size 2.5 kind LARGE data [ 1, 2 ] number -3"));
  EXPECT_EQ(node->size.getValue(), 2.5f);
  EXPECT_EQ(node->kind.getValue(), 5);
  EXPECT_EQ(node->data.getNum(), 2);
  EXPECT_EQ(node->number.getValue(), -3);
  EXPECT_FALSE(node->set("weight 3"));
  EXPECT_FALSE(node->set("size big"));
  EXPECT_EQ(takeTexts(), (std::vector<std::string>{"There is no field weight in TestNumber.",
                                                   "The field size of TestNumber has no value of this form."}));
}
