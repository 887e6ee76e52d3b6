// SPDX-License-Identifier: BSD-3-Clause
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace meshtest;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(KbDataSet, FlatScalarsInPlace) {
  std::vector<float> values{3.0f, -1.5f, 7.0f};
  const KbScalarSetI set("pressure", DataBinding::PER_NODE, values);
  EXPECT_EQ(set.getName(), "pressure");
  EXPECT_EQ(set.getBinding(), DataBinding::PER_NODE);
  EXPECT_EQ(set.getSize(), 3u);
  EXPECT_EQ(set.get(1), -1.5);
  EXPECT_TRUE(std::isnan(set.get(3)));
  EXPECT_EQ(set.getMin(), -1.5);
  EXPECT_EQ(set.getMax(), 7.0);
  const KiRawArray raw = set.getRawArray(KiRawArrays::VALUES);
  EXPECT_EQ(raw.data, values.data());
  EXPECT_EQ(raw.type, KiRawArray::FLOAT32);
  EXPECT_EQ(raw.size, 3u);
}

TEST(KbDataSet, RangeFollowsTheStamp) {
  std::vector<double> values{1.0, 2.0};
  KbScalarSetI set("a", DataBinding::PER_CELL, values);
  EXPECT_EQ(set.getMax(), 2.0);
  values[0] = 5.0;
  EXPECT_EQ(set.getMax(), 2.0) << "nobody has told the change";
  const std::size_t before = set.getTimeStamp();
  set.touch();
  EXPECT_GT(set.getTimeStamp(), before);
  EXPECT_EQ(set.getMax(), 5.0);

  const std::vector<double> others{-4.0, -3.0};
  EXPECT_TRUE(set.setValues(others));
  EXPECT_EQ(set.getMin(), -4.0);
  const Messages messages;
  const std::vector<double> tooMany{1, 2, 3};
  EXPECT_FALSE(set.setValues(tooMany));
  EXPECT_EQ(messages.only(), "KbDataSet::setValues: data set \"a\": 3 values instead of 2");
  EXPECT_EQ(set.get(0), -4.0);
}

TEST(KbDataSet, RangeLeavesNaNOut) {
  // Any length, any place: the range is computed in lanes.
  for (std::size_t size = 1; size < 40; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      std::vector<double> values(size, nan);
      values[place] = 2.5;
      values[(place + size / 2) % size] = size == 1 ? 2.5 : 4.5;
      const KbScalarSetI set("a", DataBinding::PER_CELL, values);
      EXPECT_EQ(set.getMin(), 2.5);
      EXPECT_EQ(set.getMax(), size == 1 ? 2.5 : 4.5) << size << ' ' << place;
    }
  }
  const std::vector<double> nothing{nan, nan};
  const KbScalarSetI empty("b", DataBinding::PER_CELL, nothing);
  EXPECT_TRUE(std::isnan(empty.getMin()));
  EXPECT_TRUE(std::isnan(empty.getMax()));
}

TEST(KbDataSet, IntegersWorkWithoutTheFastPath) {
  const std::vector<std::int64_t> values{5, -9, 3};
  const KbScalarSetI set("layer", DataBinding::PER_CELL, values);
  EXPECT_EQ(set.get(1), -9.0);
  EXPECT_EQ(set.getMin(), -9.0);
  EXPECT_EQ(set.getMax(), 5.0);
  EXPECT_FALSE(set.getRawArray(KiRawArrays::VALUES));
}

TEST(KbDataSet, VectorsAreComparedByLength) {
  const std::vector<KbVec3<float>> values{{0, 3, 0}, {-1, 0, 0}, {2, 2, 2}};
  const KbVec3SetI set("velocity", DataBinding::PER_NODE, values);
  EXPECT_EQ(set.getSize(), 3u);
  EXPECT_EQ(set.get(2), Point(2, 2, 2));
  EXPECT_EQ(set.getMin(), Point(-1, 0, 0));
  EXPECT_EQ(set.getMax(), Point(2, 2, 2));
  EXPECT_EQ(set.getRawArray(KiRawArrays::VALUES).size, 9u);
}

TEST(KbDataSet, StructuredFormsCountTheFirstAxisFastest) {
  std::vector<double> values(24);
  for (std::size_t v = 0; v < 24; ++v)
    values[v] = static_cast<double>(v);
  const KbScalarSetIj flat("a", DataBinding::PER_NODE, values, {4, 6});
  EXPECT_EQ(flat.get(3, 2), 11.0);
  const KbScalarSetIjk solid("b", DataBinding::PER_CELL, values, {2, 3, 4});
  EXPECT_EQ(solid.get(1, 2, 3), 23.0);
  EXPECT_EQ(solid.get(1, 0, 2), 13.0);
  const KbVec3SetIjk vectors("c", DataBinding::PER_CELL, values, {2, 2, 2});
  EXPECT_EQ(vectors.get(1, 1, 0), Point(9, 10, 11));
  EXPECT_EQ(solid.getRawArray(KiRawArrays::VALUES).data, values.data());
}

TEST(KbDataSet, Strings) {
  const std::vector<std::string> names{"clay", "sand"};
  const KbStringSetI set("rock", DataBinding::PER_CELL, names);
  EXPECT_EQ(set.getSize(), 2u);
  EXPECT_EQ(set.get(1), "sand");
  EXPECT_EQ(set.get(2), "");
  EXPECT_EQ(set.getMax(), "");
  EXPECT_FALSE(set.getRawArray(KiRawArrays::VALUES));
}

TEST(KbDataSet, StringsOfStructuredMeshes) {
  const std::vector<std::string> names{"a", "b", "c", "d", "e", "f", "g", "h"};
  const KbStringSetIj flat("rock", DataBinding::PER_NODE, names, {2, 4});
  EXPECT_EQ(flat.get(1, 2), "f");
  EXPECT_EQ(flat.getCounts(), (KbIndex<2>{2, 4}));
  const KbStringSetIjk solid("rock", DataBinding::PER_CELL, names, {2, 2, 2});
  const KiDataSetIjk<std::string>& set = solid;
  EXPECT_EQ(set.get(0, 1, 1), "g");
  EXPECT_EQ(set.get(0, 0, 2), "") << "out of range";
  EXPECT_EQ(set.getMin(), "");

  const Messages messages;
  const KbStringSetIjk empty("rock", DataBinding::PER_CELL, names, {2, 2, 3});
  EXPECT_EQ(messages.only(), "KbDataSet::KbDataSet: data set \"rock\" has 8 values instead of 2 x 2 x 3");
  EXPECT_EQ(empty.get(0, 0, 0), "");
}

TEST(KbDataSet, WrongSizesGiveAnEmptySet) {
  const std::vector<double> values(7, 1.0);
  {
    const Messages messages;
    const KbScalarSetIjk set("poro", DataBinding::PER_CELL, values, {2, 2, 2});
    EXPECT_EQ(messages.only(), "KbDataSet::KbDataSet: data set \"poro\" has 7 values instead of 2 x 2 x 2");
    EXPECT_TRUE(std::isnan(set.get(0, 0, 0)));
    EXPECT_TRUE(std::isnan(set.getMin()));
    EXPECT_FALSE(set.getRawArray(KiRawArrays::VALUES));
  }
  {
    const Messages messages;
    const KbVec3SetI set("u", DataBinding::PER_CELL, values);
    EXPECT_EQ(messages.only(), "KbDataSet::KbDataSet: data set \"u\" has 7 numbers, no multiple of 3");
    EXPECT_EQ(set.getSize(), 0u);
  }
  const Messages messages;
  const KbScalarSetI set("x", DataBinding::AUTO, values);
  EXPECT_EQ(messages.only(), "KbDataSet::KbDataSet: data set \"x\" is neither PER_CELL nor PER_NODE");
}

} // namespace
