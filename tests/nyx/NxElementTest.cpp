// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/caches/NxCache.h>
#include <Nyx/misc/NxState.h>

#include <random>

class NxElementTest : public ToolkitTest {
protected:
  NxCallbackAction action;
  NxState* state() { return action.getState(); }
};

TEST_F(NxElementTest, ReRegisteredClassHasANewStackIndexAndItsOldKey) {
  const int index = TestNumberElement::getClassStackIndex();
  const uint16_t key = TestNumberElement::getClassElementKey();
  EXPECT_GT(index, 0);
  EXPECT_NE(key, NxElement::badElementKey());
  EXPECT_NE(key, TestListElement::getClassElementKey());
  TestNumberElement::exitClass();
  EXPECT_EQ(TestNumberElement::getClassStackIndex(), 0);
  EXPECT_TRUE(TestNumberElement::getClassTypeId().isBad());
  EXPECT_EQ(TestNumberElement::getClassElementKey(), key);
  EXPECT_EQ(TestNumberElement::get(state()), -1) << "the actions must not carry the element any more";
  TestNumberElement::initClass();
  EXPECT_GT(TestNumberElement::getClassStackIndex(), index);
  EXPECT_EQ(TestNumberElement::getClassElementKey(), key);
  TestNumberElement::set(state(), nullptr, 3);
  EXPECT_EQ(TestNumberElement::get(state()), 3);
}

TEST_F(NxElementTest, RegistrationAndConstructionMessages) {
  TestNumberElement::exitClass();
  TestNumberElement::exitClass();
  EXPECT_EQ(takeTexts(),
            std::vector<std::string>{"Unable to remove type (TestNumberElement) for this class. Check exitClass() "
                                     "method is implemented and is called only once.\n"});
  NxReplacedElement::exitClass();
  TestNumberElement::initClass();
  EXPECT_EQ(takeTexts(),
            std::vector<std::string>{"TestNumberElement initialized before parent class NxReplacedElement\n"});
}

TEST_F(NxElementTest, StackIndexOfTheBasesIsNegative) {
  EXPECT_LT(NxElement::getClassStackIndex(), 0);
  EXPECT_LT(NxReplacedElement::getClassStackIndex(), 0);
  EXPECT_LT(NxAccumulatedElement::getClassStackIndex(), 0);
}

TEST_F(NxElementTest, ActionsCarryTheElementExceptThoseThatAreNotListed) {
  for (const char* name :
       {"NxCallbackAction", "NxGLRenderAction", "NxGetMatrixAction", "NxSearchAction", "NxGetBoundingBoxAction",
        "NxWriteAction", "NxHandleEventAction", "NxPickAction", "NxRayPickAction", "NxGetPrimitiveCountAction"}) {
    const NxActionClass* const record = NxActionClass::find(name);
    ASSERT_NE(record, nullptr) << name;
    const auto elements = record->getEnabledElements();
    const auto index = static_cast<size_t>(TestNumberElement::getClassStackIndex());
    ASSERT_LT(index, elements.size()) << name;
    EXPECT_EQ(elements[index], TestNumberElement::getClassTypeId()) << name;
  }
  NxDistributeAction distribute;
  EXPECT_EQ(TestNumberElement::get(distribute.getState()), -1);
}

TEST_F(NxElementTest, PopRestoresAndUnknownElementsAreNull) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  TestNumberElement::set(state(), node, 1);
  TestListElement::add(state(), node, 1);
  state()->push();
  EXPECT_EQ(TestNumberElement::get(state()), 1);
  TestNumberElement::set(state(), node, 2);
  TestListElement::add(state(), node, 2);
  state()->push();
  TestNumberElement::set(state(), node, 3);
  state()->pop();
  EXPECT_EQ(TestNumberElement::get(state()), 2);
  EXPECT_EQ(TestListElement::get(state()), (std::vector<int>{1, 2}));
  state()->pop();
  EXPECT_EQ(TestNumberElement::get(state()), 1);
  EXPECT_EQ(TestListElement::get(state()), std::vector<int>{1});
  EXPECT_EQ(state()->getConstElement(TestListElement::getClassTypeId(), TestNumberElement::getClassStackIndex()),
            nullptr);
  EXPECT_EQ(state()->getElement(-1), nullptr);
  EXPECT_EQ(state()->getElement(100000), nullptr);
  state()->pop();
  EXPECT_EQ(takeTexts(), std::vector<std::string>{"There is no push() left to undo."});
}

// The state against a plain list of values, over random sequences of operations.
TEST_F(NxElementTest, RandomPushSetPopEqualsAStackOfValues) {
  std::mt19937 random(7);
  const NbRefPtr<TestNumber> node(new TestNumber);
  std::vector<int> expected{0};
  std::vector<std::vector<int>> lists{{}};
  for (int step = 0; step < 20000; ++step) {
    switch (random() % 5) {
    case 0:
      state()->push();
      expected.push_back(expected.back());
      lists.push_back(lists.back());
      break;
    case 1:
      if (expected.size() > 1) {
        state()->pop();
        expected.pop_back();
        lists.pop_back();
      }
      break;
    case 2:
      TestNumberElement::set(state(), node, step);
      expected.back() = step;
      break;
    case 3:
      if (lists.back().size() < 20) {
        TestListElement::add(state(), node, step);
        lists.back().push_back(step);
      }
      break;
    default:
      ASSERT_EQ(TestNumberElement::get(state()), expected.back()) << "step " << step;
      ASSERT_EQ(TestListElement::get(state()), lists.back()) << "step " << step;
    }
    ASSERT_EQ(state()->getDepth(), static_cast<int>(expected.size()) - 1);
  }
  while (state()->getDepth() > 0)
    state()->pop();
}

TEST_F(NxElementTest, ElementsAreReusedByLaterPushes) {
  state()->push();
  NxElement* const first = state()->getElement(TestNumberElement::getClassStackIndex());
  state()->pop();
  state()->push();
  EXPECT_EQ(state()->getElement(TestNumberElement::getClassStackIndex()), first);
  state()->pop();
}

namespace {

class TestCache : public NxCache {
public:
  using NxCache::NxCache;
};

} // namespace

TEST_F(NxElementTest, CacheIsValidWhileWhatItRecordedMatches) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  TestNumberElement::set(state(), node, 1);
  const NbRefPtr<TestCache> cache(new TestCache(state()));
  EXPECT_TRUE(cache->isValid(state())) << "nothing recorded yet";
  cache->addElement(nullptr);
  cache->addElement(
      state()->getConstElement(TestNumberElement::getClassTypeId(), TestNumberElement::getClassStackIndex(), 1));
  EXPECT_TRUE(cache->isValid(state()));
  EXPECT_EQ(cache->getInvalidElement(state()), nullptr);
  TestListElement::add(state(), node, 1);
  EXPECT_TRUE(cache->isValid(state())) << "not recorded";

  node->touch();
  TestNumberElement::set(state(), node, 1);
  EXPECT_FALSE(cache->isValid(state()));
  const NxElement* const invalid = cache->getInvalidElement(state());
  ASSERT_NE(invalid, nullptr);
  EXPECT_TRUE(invalid->isOfType(TestNumberElement::getClassTypeId()));
  EXPECT_EQ(static_cast<const TestNumberElement*>(invalid)->number, 1) << "the element of the state, not the copy";
}

TEST_F(NxElementTest, InvalidatedCacheStaysInvalid) {
  const NbRefPtr<TestCache> cache(new TestCache(state()));
  cache->invalidate();
  EXPECT_FALSE(cache->isValid(state()));
  EXPECT_EQ(cache->getInvalidElement(state()), nullptr);
}

TEST_F(NxElementTest, CacheOfAnAccumulatedElementComparesTheListOfNodes) {
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
  TestListElement::add(state(), a, 1);
  const NbRefPtr<TestCache> cache(new TestCache(state()));
  cache->addElement(state()->getConstElement(TestListElement::getClassTypeId(), TestListElement::getClassStackIndex()));
  EXPECT_TRUE(cache->isValid(state()));
  state()->push();
  TestListElement::add(state(), b, 1);
  EXPECT_FALSE(cache->isValid(state()));
  state()->pop();
  EXPECT_TRUE(cache->isValid(state()));
}

TEST_F(NxElementTest, OpenCacheRecordsWhatWasSetBeforeItAndIsRead) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  const NbRefPtr<TestCache> cache(new TestCache(state()));
  TestNumberElement::set(state(), node, 1);
  state()->push();
  state()->openCache(cache);
  TestListElement::add(state(), node, 1); // Set inside: what is read of it depends on nothing outside.
  TestListElement::get(state());
  TestNumberElement::get(state());
  state()->closeCache();
  state()->pop();
  TestListElement::add(state(), node, 2);
  EXPECT_TRUE(cache->isValid(state()));
  node->touch();
  TestNumberElement::set(state(), node, 1);
  EXPECT_FALSE(cache->isValid(state()));
}

TEST_F(NxElementTest, DebuggingOfCachesIsASwitch) {
  NxCache::setDebuggingCache(true);
  EXPECT_TRUE(NxCache::isDebuggingCache());
  NxCache::setDebuggingCache(false);
  EXPECT_FALSE(NxCache::isDebuggingCache());
}
