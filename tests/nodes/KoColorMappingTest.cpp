// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoColorMapping.h>

#include "colors/KdLevelColorMapping.h"
#include "colors/KdLinearColorMapping.h"
#include "nodes/NodesTestTools.h"

#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinDataMapping/nodes/KoCombineColorMapping.h>
#include <KerrinDataMapping/nodes/KoCustomColorMapping.h>
#include <KerrinDataMapping/nodes/KoLevelColorMapping.h>
#include <KerrinDataMapping/nodes/KoLinearColorMapping.h>

#include <limits>

namespace {

using Mapping = KiColorMapping<double, NbColorRGBA>;
using KoColorMappingTest = KoTest;

const NbColorRGBA RED(1, 0, 0, 1), GREEN(0, 1, 0, 1), BLUE(0, 0, 1, 1), WHITE(1, 1, 1, 1), GREY(0.5f, 0.5f, 0.5f, 1);

const Mapping* mappingBelow(NxNode* node) {
  const Mapping* mapping = nullptr;
  lookBelow({node}, [&](NxState* state) { mapping = KoColorMappingElement::getColorMapping(state); });
  return mapping;
}

class Half : public Mapping {
public:
  NbColorRGBA getColor(double) const override { return GREY; }
  std::size_t getTimeStamp() const override { return 1; }
};

TEST_F(KoColorMappingTest, AMappingWithoutARangeThrowsWhenItIsAskedForOne) {
  double min, max;
  try {
    Half().getRangeValue(min, max);
    FAIL() << "no exception";
  } catch (const KiAbstractMethodError& error) {
    EXPECT_STREQ(error.what(), "KiColorMapping::getRangeValue(_TValue& min, _TValue& max)");
  }
}

TEST_F(KoColorMappingTest, CustomAndCombineNodesPutTheirMappingIntoTheState) {
  class Sum : public KoCombineColorMapping::Mapping {
  public:
    NbColorRGBA getColor(const std::vector<double>&) const override { return GREY; }
    std::size_t getTimeStamp() const override { return 2; }
  };
  const Half half;
  const NbRefPtr<KoCustomColorMapping> custom(new KoCustomColorMapping);
  EXPECT_EQ(mappingBelow(custom.get()), nullptr);
  custom->setColorMapping(&half);
  EXPECT_EQ(custom->getColorMapping(), &half);
  EXPECT_EQ(mappingBelow(custom.get()), &half);
  const NbRefPtr<KoCustomColorMapping> copy(new KoCustomColorMapping(*custom));
  EXPECT_EQ(copy->getColorMapping(), &half);

  const Sum sum;
  const NbRefPtr<KoCombineColorMapping> combine(new KoCombineColorMapping);
  combine->setColorMapping(&sum);
  lookBelow({combine.get()}, [&](NxState* state) {
    EXPECT_EQ(KoCombineColorMappingElement::getColorMapping(state), &sum);
    EXPECT_EQ(KoColorMappingElement::getColorMapping(state), nullptr);
  });
}

TEST_F(KoColorMappingTest, DefaultLinearNodeGivesItsOneColour) {
  const NbRefPtr<KoLinearColorMapping> node(new KoLinearColorMapping);
  const Mapping* mapping = mappingBelow(node.get());
  ASSERT_NE(mapping, nullptr);
  for (const double v : {-1.0, 0.0, 1.0})
    EXPECT_EQ(mapping->getColor(v), NbColorRGBA(0, 0, 0, 0));
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(KoColorMappingTest, WrongCountsArePostedAndTheMappingAboveStays) {
  const Half half;
  const NbRefPtr<KoCustomColorMapping> above(new KoCustomColorMapping);
  above->setColorMapping(&half);
  const NbRefPtr<KoLevelColorMapping> level(new KoLevelColorMapping);
  const NbRefPtr<KoLinearColorMapping> linear(new KoLinearColorMapping);
  linear->values.set1Value(1, 2.f);
  lookBelow({above.get(), level.get(), linear.get()},
            [&](NxState* state) { EXPECT_EQ(KoColorMappingElement::getColorMapping(state), &half); });
  EXPECT_EQ(takeMessages(),
            (Messages{"KoLevelColorMappig: Level colormapping requires exactly one more value than provided colors.",
                      "KoLinearColorMappig: Linear colormapping requires exactly the same count of values and "
                      "colors."}));
  linear->values.setNum(0);
  level->colors.setNum(0);
  lookBelow({above.get(), level.get(), linear.get()},
            [&](NxState* state) { EXPECT_EQ(KoColorMappingElement::getColorMapping(state), &half); });
  EXPECT_EQ(takeMessages(), Messages()) << "empty lists are no mapping and no error";
}

TEST_F(KoColorMappingTest, LinearInterpolatesBetweenItsEntries) {
  KdLinearColorMapping mapping;
  mapping.setEntries({{1.0, RED}, {3.0, BLUE}, {4.0, WHITE}});
  EXPECT_EQ(mapping.getColor(0.0), RED);
  EXPECT_EQ(mapping.getColor(1.0), RED) << "interpolated at t = 0";
  EXPECT_EQ(mapping.getColor(1.5), NbColorRGBA(0.75f, 0, 0.25f, 1));
  EXPECT_EQ(mapping.getColor(2.0), NbColorRGBA(0.5f, 0, 0.5f, 1));
  EXPECT_EQ(mapping.getColor(3.0), BLUE);
  EXPECT_EQ(mapping.getColor(3.5), NbColorRGBA(0.5f, 0.5f, 1, 1));
  EXPECT_EQ(mapping.getColor(4.0), WHITE);
  EXPECT_EQ(mapping.getColor(9.0), WHITE);
  double min, max;
  mapping.getRangeValue(min, max);
  EXPECT_EQ(min, 1.0);
  EXPECT_EQ(max, 4.0);
  mapping.setMinThreshold({true, 1.25, GREEN});
  mapping.setMaxThreshold({true, 3.75, GREY});
  EXPECT_EQ(mapping.getColor(1.2), GREEN);
  EXPECT_EQ(mapping.getColor(1.25), NbColorRGBA(0.875f, 0, 0.125f, 1)) << "the threshold itself is inside";
  EXPECT_EQ(mapping.getColor(3.75), NbColorRGBA(0.75f, 0.75f, 1, 1));
  EXPECT_EQ(mapping.getColor(3.8), GREY);
}

TEST_F(KoColorMappingTest, EqualContentKeepsTheStamp) {
  const NbRefPtr<KoLinearColorMapping> node(new KoLinearColorMapping);
  const auto stampBelow = [&] { return mappingBelow(node.get())->getTimeStamp(); };
  const std::size_t first = stampBelow();
  EXPECT_EQ(stampBelow(), first);
  node->values.setValue(0.f);
  EXPECT_EQ(stampBelow(), first) << "an equal value again";
  node->values.setValue(1.f);
  const std::size_t second = stampBelow();
  EXPECT_GT(second, first);
  node->minThresholdColor.setValue(NbVec4f(1, 0, 0, 1));
  EXPECT_GT(stampBelow(), second);

  const NbRefPtr<KoLevelColorMapping> level(new KoLevelColorMapping);
  level->values.set1Value(1, 1.f);
  const auto* mapping = mappingBelow(level.get());
  const std::size_t stamp = mapping->getTimeStamp();
  EXPECT_EQ(mappingBelow(level.get())->getTimeStamp(), stamp);
  level->minThresholdEnable = true;
  level->minThresholdValue = -1.f;
  const std::size_t enabled = mappingBelow(level.get())->getTimeStamp();
  EXPECT_GT(enabled, stamp);
  level->minThresholdColor.setValue(NbVec4f(1, 0, 0, 1));
  EXPECT_GT(mappingBelow(level.get())->getTimeStamp(), enabled);
  EXPECT_EQ(mapping->getColor(-1.01), RED) << "the levels were rebuilt";
}

TEST_F(KoColorMappingTest, CopiesHaveAWorkingObjectOfTheirOwn) {
  const NbRefPtr<KoLinearColorMapping> node(new KoLinearColorMapping);
  node->values.setValue(4.f);
  const NbRefPtr<KoLinearColorMapping> copy(new KoLinearColorMapping(*node));
  EXPECT_EQ(copy->values[0], 4.f);
  EXPECT_NE(mappingBelow(copy.get()), mappingBelow(node.get()));
}

std::vector<double> levelsOf(const KdLevelColorMapping& mapping) {
  std::vector<double> levels;
  for (std::size_t i = 0; i < mapping.getNumLevels(); ++i)
    levels.push_back(mapping.getLevel(i));
  return levels;
}

std::vector<NbColorRGBA> colorsOf(const KdLevelColorMapping& mapping) {
  std::vector<NbColorRGBA> colors;
  for (std::size_t i = 0; i < mapping.getNumColors(); ++i)
    colors.push_back(mapping.getLevelColor(i));
  return colors;
}

TEST_F(KoColorMappingTest, LevelsGiveOneColourABand) {
  KdLevelColorMapping mapping;
  mapping.setValues({0.0, 1.0, 2.0, 4.0}, {RED, GREEN, BLUE});
  EXPECT_EQ(mapping.getColor(-5.0), RED) << "below the first level";
  EXPECT_EQ(mapping.getColor(0.0), RED);
  EXPECT_EQ(mapping.getColor(0.99), RED);
  EXPECT_EQ(mapping.getColor(1.0), GREEN) << "a level belongs to the band above";
  EXPECT_EQ(mapping.getColor(2.0), BLUE);
  EXPECT_EQ(mapping.getColor(4.0), BLUE) << "at the last level";
  EXPECT_EQ(mapping.getColor(99.0), BLUE);
  EXPECT_EQ(mapping.bandIndex(std::numeric_limits<double>::quiet_NaN()), 2U) << "no band of its own, but a band";
  double min, max;
  mapping.getRangeValue(min, max);
  EXPECT_EQ(min, 0.0);
  EXPECT_EQ(max, 4.0);
}

TEST_F(KoColorMappingTest, ThresholdsBecomeBands) {
  // What the levels and colours become, by hand from 0, 1, 2, 4 with red, green, blue.
  struct Row {
    const char* name;
    KdLevelColorMapping::Threshold min, max;
    std::vector<double> levels;
    std::vector<NbColorRGBA> colors;
  };
  const KdLevelColorMapping::Threshold off;
  const std::vector<Row> rows = {
      {"none", off, off, {0, 1, 2, 4}, {RED, GREEN, BLUE}},
      // delta = (4 - -1) / 20 = 0.25; the first band starts at the threshold
      {"min below", {true, -1, WHITE}, off, {-1.25, -1, 1, 2, 4}, {WHITE, RED, GREEN, BLUE}},
      {"min inside a band", {true, 0.5, WHITE}, off, {0, 0.5, 1, 2, 4}, {WHITE, RED, GREEN, BLUE}},
      {"min on a level", {true, 1, WHITE}, off, {0, 1, 1, 2, 4}, {WHITE, RED, GREEN, BLUE}},
      {"min in the second band", {true, 1.5, WHITE}, off, {0, 1.5, 2, 4}, {WHITE, GREEN, BLUE}},
      {"min above all", {true, 5, WHITE}, off, {0, 5}, {WHITE}},
      // delta = (5 - 0) / 20 = 0.25
      {"max above", off, {true, 5, GREY}, {0, 1, 2, 5, 5.25}, {RED, GREEN, BLUE, GREY}},
      {"max inside a band", off, {true, 3, GREY}, {0, 1, 2, 3, 4}, {RED, GREEN, BLUE, GREY}},
      {"max on a level", off, {true, 2, GREY}, {0, 1, 2, 4}, {RED, GREEN, GREY}},
      {"max below all", off, {true, -1, GREY}, {-1, 4}, {GREY}},
      {"both", {true, 0.5, WHITE}, {true, 3, GREY}, {0, 0.5, 1, 2, 3, 4}, {WHITE, RED, GREEN, BLUE, GREY}},
  };
  for (const Row& row : rows) {
    KdLevelColorMapping mapping;
    mapping.setValues({0.0, 1.0, 2.0, 4.0}, {RED, GREEN, BLUE});
    mapping.setMinThreshold(row.min);
    mapping.setMaxThreshold(row.max);
    EXPECT_EQ(levelsOf(mapping), row.levels) << row.name;
    EXPECT_EQ(colorsOf(mapping), row.colors) << row.name;
    if (row.min.enabled) {
      EXPECT_EQ(mapping.getColor(row.min.value - 0.01), WHITE) << row.name;
    }
    if (row.max.enabled) {
      EXPECT_EQ(mapping.getColor(row.max.value + 0.01), GREY) << row.name;
    }
    NbColorRGBA color;
    double value;
    EXPECT_EQ(mapping.getMinThreshold(value, color), row.min.enabled);
    EXPECT_EQ(mapping.getMaxThreshold(value, color), row.max.enabled);
  }
}

TEST_F(KoColorMappingTest, UnsortedValuesDoNotCrash) {
  KdLevelColorMapping level;
  level.setValues({3.0, -1.0, 2.0}, {RED, GREEN});
  level.setMinThreshold({true, 0.0, WHITE});
  level.setMaxThreshold({true, 1.0, GREY});
  EXPECT_EQ(level.getNumLevels(), level.getNumColors() + 1);
  KdLinearColorMapping linear;
  linear.setEntries({{3.0, RED}, {-1.0, GREEN}, {-1.0, BLUE}});
  for (const double v : {-2.0, -1.0, 0.0, 2.0, 3.0, 4.0}) {
    EXPECT_LT(level.bandIndex(v), level.getNumColors());
    linear.getColor(v);
  }
}

} // namespace
