// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoPredefinedColorMapping.h>

#include "colors/PredefinedColorMaps.h"
#include "nodes/NodesTestTools.h"

#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/nodes/KoCustomColorMapping.h>

#include <cmath>
#include <limits>

namespace {

using Node = KoPredefinedColorMapping;
using KoPredefinedColorMappingTest = KoTest;

/// Hue, saturation, value to red, green, blue by the hexcone's closed form (A. R. Smith, 1978), as an oracle of its
/// own.
std::array<double, 3> fromHsv(double h, double s, double v) {
  const auto channel = [&](double n) {
    const double k = std::fmod(n + h * 6.0, 6.0);
    return v - v * s * std::max(0.0, std::min({k, 4.0 - k, 1.0}));
  };
  return {channel(5), channel(3), channel(1)};
}

NbColorRGBA colorOf(Node::PredefColorMap map, double value, float min = 0.f, float max = 1.f) {
  const NbRefPtr<Node> node(new Node);
  node->predefColorMap = map;
  node->minValue = min;
  node->maxValue = max;
  return node->getColorMapping()->getColor(value);
}

void expectColor(const NbColorRGBA& actual, const std::array<double, 3>& rgb, double alpha, const char* what,
                 double x) {
  for (int c = 0; c < 3; ++c)
    EXPECT_NEAR(static_cast<double>(actual[c]), rgb[static_cast<std::size_t>(c)], 2e-6) << what << " at " << x;
  EXPECT_NEAR(static_cast<double>(actual[3]), alpha, 1e-6) << what << " at " << x;
}

TEST_F(KoPredefinedColorMappingTest, FormulasHoldOverTheWholeRange) {
  constexpr double pi = 3.141592653589793;
  for (int i = 0; i <= 1000; ++i) {
    const double value = i / 1000.0;
    const double x = static_cast<double>(static_cast<float>(value));
    expectColor(colorOf(Node::GREY, value), {1, 1, 1}, 1 - x, "grey", x);
    expectColor(colorOf(Node::INTENSITY, value), {x, x, x}, 1, "intensity", x);
    expectColor(colorOf(Node::STANDARD, value), fromHsv(0.916 * x, 1, 1), 1, "standard", x);
    if (x < 0.5) {
      expectColor(colorOf(Node::BLUE_RED, value), {2 * x, 0, 1}, 1, "blue red", x);
      expectColor(colorOf(Node::BLUE_WHITE_RED, value), {2 * x, 2 * x, 1}, 1, "blue white red", x);
    } else {
      expectColor(colorOf(Node::BLUE_RED, value), {1, 0, 2 * (1 - x)}, 1, "blue red", x);
      expectColor(colorOf(Node::BLUE_WHITE_RED, value), {1, 2 * (1 - x), 2 * (1 - x)}, 1, "blue white red", x);
    }
    const double t = x - 0.333;
    expectColor(colorOf(Node::GLOW, value),
                x <= 0.333 ? fromHsv(0, 1, 2.4024024024024024 * x)
                           : fromHsv(0.37537537537537535 * t, 1 - t / 0.666, 0.8 + 0.3003003003003003 * t),
                1, "glow", x);
    expectColor(colorOf(Node::PHYSICS, value),
                x <= 0.2 ? fromHsv(0.666, 1, 0.4 + 2.5 * x) : fromHsv(0.666 - 0.8325 * (x - 0.2), 1, 0.9), 1, "physics",
                x);
    expectColor(colorOf(Node::TEMPERATURE, value),
                x <= 0.25  ? fromHsv(0.666, 3 * x, 1)
                : x <= 0.8 ? fromHsv(0.666 + 0.606 * (x - 0.25), 0.75, 1)
                           : fromHsv(0.833 * (x - 0.8), 0.75, 1),
                1, "temperature", x);
    if (i == 0)
      expectColor(colorOf(Node::SEISMIC, value), {0, 0, 0}, 1, "seismic", x);
    else
      expectColor(colorOf(Node::SEISMIC, value),
                  {std::sin(x * pi / 2), std::min(200 * std::sin(x * pi), 175.0) / 255, std::abs(std::cos(x * pi / 2))},
                  0.333 < x && x < 0.666 ? 0.03 : 0.9, "seismic", x);
  }
}

TEST_F(KoPredefinedColorMappingTest, HandComputedColours) {
  EXPECT_EQ(colorOf(Node::BLUE_RED, 0.25), NbColorRGBA(0.5f, 0, 1, 1));
  EXPECT_EQ(colorOf(Node::BLUE_WHITE_RED, 0.75), NbColorRGBA(1, 0.5f, 0.5f, 1));
  EXPECT_EQ(colorOf(Node::GREY, 1.0), NbColorRGBA(1, 1, 1, 0)) << "the top of the range is invisible";
  EXPECT_EQ(colorOf(Node::STANDARD, 0.0), NbColorRGBA(1, 0, 0, 1));
  EXPECT_EQ(colorOf(Node::GLOW, 0.0), NbColorRGBA(0, 0, 0, 1));
  EXPECT_EQ(colorOf(Node::TEMPERATURE, 0.0), NbColorRGBA(1, 1, 1, 1));
}

TEST_F(KoPredefinedColorMappingTest, TurboIsItsTableInFlatSteps) {
  const auto entry = [](std::size_t i, float r, float g, float b) {
    EXPECT_EQ(kx::TURBO_TABLE[i], (std::array<float, 3>{r, g, b})) << i;
  };
  entry(0, 0.18995f, 0.07176f, 0.23217f);
  entry(128, 0.64362f, 0.98999f, 0.23356f);
  entry(255, 0.4796f, 0.01583f, 0.01055f);
  EXPECT_EQ(colorOf(Node::RAINBOW_TURBO, 0.0), NbColorRGBA(0.18995f, 0.07176f, 0.23217f, 1));
  EXPECT_EQ(colorOf(Node::RAINBOW_TURBO, 1.0), NbColorRGBA(0.4796f, 0.01583f, 0.01055f, 1));
  for (int i = 0; i < 255; ++i) {
    const auto& expected = kx::TURBO_TABLE[static_cast<std::size_t>(i)];
    for (const double within : {0.1, 0.5, 0.9})
      EXPECT_EQ(colorOf(Node::RAINBOW_TURBO, (i + within) / 255.0),
                NbColorRGBA(expected[0], expected[1], expected[2], 1))
          << i << " + " << within;
  }
}

TEST_F(KoPredefinedColorMappingTest, ValuesOutsideTheRangeCountAsItsEnds) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (int map = Node::GREY; map <= Node::RAINBOW_TURBO; ++map) {
    const auto m = static_cast<Node::PredefColorMap>(map);
    EXPECT_EQ(colorOf(m, -100.0, 2.f, 4.f), colorOf(m, 2.0, 2.f, 4.f)) << map;
    EXPECT_EQ(colorOf(m, 100.0, 2.f, 4.f), colorOf(m, 4.0, 2.f, 4.f)) << map;
    EXPECT_EQ(colorOf(m, nan, 2.f, 4.f), colorOf(m, 4.0, 2.f, 4.f)) << map;
  }
  EXPECT_EQ(colorOf(Node::INTENSITY, 3.5, 2.f, 4.f), NbColorRGBA(0.75f, 0.75f, 0.75f, 1));
}

TEST_F(KoPredefinedColorMappingTest, DegenerateRanges) {
  EXPECT_EQ(colorOf(Node::INTENSITY, 2.25, 2.f, 2.f), NbColorRGBA(0.25f, 0.25f, 0.25f, 1)) << "length 1";
  EXPECT_EQ(colorOf(Node::INTENSITY, 3.5, 2.f, 2.f), NbColorRGBA(1, 1, 1, 1));
  EXPECT_EQ(colorOf(Node::INTENSITY, 4.0, 4.f, 2.f), NbColorRGBA(0, 0, 0, 1)) << "ends exchanged";
  EXPECT_EQ(colorOf(Node::INTENSITY, 5.0, 4.f, 2.f), NbColorRGBA(0.5f, 0.5f, 0.5f, 1));
}

TEST_F(KoPredefinedColorMappingTest, TheSameRangeKeepsTheStamp) {
  const NbRefPtr<Node> node(new Node);
  node->predefColorMap = Node::GLOW;
  node->maxValue = 7.f;
  const auto* mapping = node->getColorMapping();
  const std::size_t stamp = mapping->getTimeStamp();
  node->maxValue = 7.f;
  EXPECT_EQ(node->getColorMapping(), mapping);
  EXPECT_EQ(mapping->getTimeStamp(), stamp);
  node->minValue = -1.f;
  EXPECT_GT(node->getColorMapping()->getTimeStamp(), stamp);
  double min, max;
  mapping->getRangeValue(min, max);
  EXPECT_EQ(min, -1.0);
  EXPECT_EQ(max, 7.0);
}

TEST_F(KoPredefinedColorMappingTest, NoneLeavesTheMappingAboveInForce) {
  const NbRefPtr<Node> above(new Node), node(new Node);
  above->predefColorMap = Node::GLOW;
  EXPECT_EQ(node->getColorMapping(), nullptr);
  const auto below = [&] {
    const Node::Mapping* mapping = nullptr;
    lookBelow({above.get(), node.get()},
              [&](NxState* state) { mapping = KoColorMappingElement::getColorMapping(state); });
    return mapping;
  };
  EXPECT_EQ(below(), above->getColorMapping());
  node->predefColorMap = Node::STANDARD;
  EXPECT_EQ(below(), node->getColorMapping());
  node->predefColorMap = Node::NONE;
  EXPECT_EQ(below(), above->getColorMapping());
}

TEST_F(KoPredefinedColorMappingTest, NamesOfTheMaps) {
  const NbRefPtr<Node> node(new Node);
  const char* const names[] = {"NONE",     "GREY",    "TEMPERATURE",    "PHYSICS",   "STANDARD",     "GLOW",
                               "BLUE_RED", "SEISMIC", "BLUE_WHITE_RED", "INTENSITY", "RAINBOW_TURBO"};
  ASSERT_EQ(node->predefColorMap.getNumEnums(), 11);
  for (int i = 0; i < 11; ++i)
    EXPECT_STREQ(node->predefColorMap.getEnumName(i).getString(), names[i]);
}

} // namespace
