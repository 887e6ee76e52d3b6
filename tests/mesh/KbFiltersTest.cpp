// SPDX-License-Identifier: BSD-3-Clause
#include "MeshTestTools.h"

#include <KerrinMesh/KbCellListFilter.h>
#include <KerrinMesh/KbCombinedFilter.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbIndexRangeFilter.h>
#include <KerrinMesh/KbValueRangeFilter.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace meshtest;

TEST(KbFilters, ValueRange) {
  std::vector<double> values{0.0, 1.0, 2.0, std::numeric_limits<double>::quiet_NaN()};
  KbScalarSetI set("v", DataBinding::PER_CELL, values);
  KbValueRangeFilterI filter(set, 1.0, 2.0);
  EXPECT_FALSE(filter.acceptCell(0));
  EXPECT_TRUE(filter.acceptCell(1));
  EXPECT_TRUE(filter.acceptCell(2));
  EXPECT_FALSE(filter.acceptCell(3));

  const std::size_t before = filter.getTimeStamp();
  values[0] = 1.5;
  set.touch();
  EXPECT_GT(filter.getTimeStamp(), before) << "the answer for cell 0 has changed";
  EXPECT_TRUE(filter.acceptCell(0));
  const std::size_t between = filter.getTimeStamp();
  filter.setRange(-1.0, 1.2);
  EXPECT_GT(filter.getTimeStamp(), between);
  EXPECT_FALSE(filter.acceptCell(0));
  EXPECT_TRUE(filter.acceptCell(1));
  EXPECT_EQ(filter.getTimeStamp(), filter.getTimeStamp());
}

TEST(KbFilters, ValueRangeOfStructuredForms) {
  const std::vector<float> values{0, 1, 2, 3, 4, 5, 6, 7};
  const KbScalarSetIj flat("a", DataBinding::PER_CELL, values, {4, 2});
  const KbValueRangeFilterIj filterIj(flat, 5.0, 6.0);
  EXPECT_TRUE(filterIj.acceptCell(1, 1));
  EXPECT_FALSE(filterIj.acceptCell(3, 1));
  const KbScalarSetIjk solid("b", DataBinding::PER_CELL, values, {2, 2, 2});
  const KbValueRangeFilterIjk filterIjk(solid, 5.0, 6.0);
  EXPECT_TRUE(filterIjk.acceptCell(1, 0, 1));
  EXPECT_FALSE(filterIjk.acceptCell(1, 1, 1));
}

TEST(KbFilters, ValueRangeNeedsValuesPerCell) {
  const std::vector<float> values{0, 1};
  const KbScalarSetI set("nodes", DataBinding::PER_NODE, values);
  const Messages messages;
  const KbValueRangeFilterI filter(set, 5.0, 6.0);
  EXPECT_EQ(messages.only(), "KbValueRangeFilter::KbValueRangeFilter: data set \"nodes\" has no values per cell");
  EXPECT_TRUE(filter.acceptCell(0));
}

TEST(KbFilters, IndexRange) {
  KbIndexRangeFilterI one({2}, {4});
  EXPECT_FALSE(one.acceptCell(1));
  EXPECT_TRUE(one.acceptCell(2));
  EXPECT_TRUE(one.acceptCell(3));
  EXPECT_FALSE(one.acceptCell(4));
  const std::size_t before = one.getTimeStamp();
  one.setRange({0}, {1});
  EXPECT_GT(one.getTimeStamp(), before);
  EXPECT_TRUE(one.acceptCell(0));
  const KbIndexRangeFilterIj two({0, 5}, {9, 6});
  EXPECT_TRUE(two.acceptCell(8, 5));
  EXPECT_FALSE(two.acceptCell(8, 6));
  const KbIndexRangeFilterIjk three({1, 1, 1}, {2, 3, 4});
  EXPECT_TRUE(three.acceptCell(1, 2, 3));
  EXPECT_FALSE(three.acceptCell(1, 3, 3));
  EXPECT_FALSE(three.acceptCell(0, 2, 3));
}

TEST(KbFilters, CellList) {
  KbCellListFilterI one({{9}, {2}, {9}});
  EXPECT_TRUE(one.acceptCell(9));
  EXPECT_TRUE(one.acceptCell(2));
  EXPECT_FALSE(one.acceptCell(3));
  EXPECT_EQ(one.getCells().size(), 2u);
  const std::size_t before = one.getTimeStamp();
  one.setCells({{3}});
  EXPECT_GT(one.getTimeStamp(), before);
  EXPECT_TRUE(one.acceptCell(3));
  EXPECT_FALSE(one.acceptCell(9));
  const KbCellListFilterIjk three({{1, 2, 3}, {0, 0, 0}});
  EXPECT_TRUE(three.acceptCell(1, 2, 3));
  EXPECT_FALSE(three.acceptCell(3, 2, 1));
}

TEST(KbFilters, Combinations) {
  KbIndexRangeFilterIj left({0, 0}, {5, 9});
  const KbIndexRangeFilterIj low({0, 0}, {9, 5});
  const KbCombinedFilterIj both(KbFilterRule::ALL_OF, {&left, &low, nullptr});
  const KbCombinedFilterIj any(KbFilterRule::ANY_OF, {&left, &low});
  const KbCombinedFilterIj none(KbFilterRule::NONE_OF, {&left, &low});
  KbCombinedFilterIj notBoth(KbFilterRule::NONE_OF, {&both});
  for (std::size_t i : {0u, 7u}) {
    for (std::size_t j : {0u, 7u}) {
      const bool inLeft = i < 5;
      const bool inLow = j < 5;
      EXPECT_EQ(both.acceptCell(i, j), inLeft && inLow);
      EXPECT_EQ(any.acceptCell(i, j), inLeft || inLow);
      EXPECT_EQ(none.acceptCell(i, j), !inLeft && !inLow);
      EXPECT_EQ(notBoth.acceptCell(i, j), !(inLeft && inLow));
    }
  }
  const std::size_t before = notBoth.getTimeStamp();
  left.setRange({0, 0}, {1, 1});
  EXPECT_GT(notBoth.getTimeStamp(), before) << "through two levels";
  const std::size_t between = notBoth.getTimeStamp();
  notBoth.setFilters(KbFilterRule::ANY_OF, {});
  EXPECT_GT(notBoth.getTimeStamp(), between);
  EXPECT_FALSE(notBoth.acceptCell(0, 0));
  EXPECT_TRUE(KbCombinedFilterIj(KbFilterRule::ALL_OF, {}).acceptCell(0, 0));
}

} // namespace
