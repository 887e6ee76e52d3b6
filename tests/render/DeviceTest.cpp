// SPDX-License-Identifier: BSD-3-Clause
#include "render/GlDevice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace nx::render;

namespace {

std::vector<std::string> collected;
void collect(const char* origin, const std::string& text) { collected.push_back(std::string(origin) + ": " + text); }

/// Whether rules can stand together in a record.
bool isPossible(Rules rules) {
  const auto has = [rules](Rules rule) { return (rules & rule) != 0; };
  const int normals = has(RuleVertexNormal) + has(RuleFaceNormal) + has(RuleConstantNormal);
  return normals <= (has(RuleLit) ? 1 : 0) && !(has(RuleVertexColor) && has(RuleFaceColor)) &&
         !(has(RuleLines) && has(RulePoints)) && (has(RuleLines) || !has(RulePattern));
}

} // namespace

TEST(Programs, EveryPossibleSetOfRulesBuilds) {
  collected.clear();
  const std::unique_ptr<Context> context = makeEglContext("", collect);
  ASSERT_TRUE(context);
  const ContextScope scope(*context);
  NxRenderStatistics statistics;
  ProgramCache programs(collect);
  int count = 0;
  for (Rules rules = 0; rules < RuleComposite; ++rules) {
    if (!isPossible(rules)) continue;
    ++count;
    EXPECT_NE(programs.get(rules, statistics).id, 0U) << ruleNames(rules);
    EXPECT_NE(programs.get(rules, statistics).id, 0U); // not built again
  }
  EXPECT_NE(programs.get(RuleComposite, statistics).id, 0U);
  EXPECT_EQ(statistics.programsBuilt, static_cast<uint64_t>(count + 1));
  EXPECT_TRUE(collected.empty()) << collected.front();
}

TEST(Programs, RulesHaveNames) {
  EXPECT_EQ(ruleNames(0), "plain");
  EXPECT_EQ(ruleNames(RuleLit | RuleFaceColor), "lit+face colour");
}

TEST(Devices, EachPlatformWorksOrSaysWhatFailed) {
  int working = 0;
  for (const char* platform : {"surfaceless", "device", "default"}) {
    collected.clear();
    const std::unique_ptr<Device> device = makeOffscreenDevice(platform, collect);
    if (device) {
      ++working;
      EXPECT_GE(device->maxSamples(), 1);
      EXPECT_TRUE(collected.empty());
    } else {
      ASSERT_EQ(collected.size(), 1U);
      EXPECT_NE(collected[0].find(std::string("(") + platform + ": "), std::string::npos) << collected[0];
    }
  }
  EXPECT_GE(working, 1);
}

TEST(Devices, AWindowDeviceNeedsACurrentContext) {
  collected.clear();
  EXPECT_FALSE(makeWindowDevice(collect));
  ASSERT_EQ(collected.size(), 1U);
  EXPECT_NE(collected[0].find("no OpenGL context is current"), std::string::npos);
}

TEST(Devices, AWindowDeviceDrawsIntoTheBoundFramebuffer) {
  collected.clear();
  const std::unique_ptr<Context> context = makeEglContext("", collect);
  ASSERT_TRUE(context);
  const ContextScope scope(*context);
  RenderTarget window; // stands for the application's
  ASSERT_TRUE(window.resize(8, 8, 0));
  window.bindResult();
  std::vector<unsigned char> pixels;
  {
    const std::unique_ptr<Device> device = makeWindowDevice(collect);
    ASSERT_TRUE(device);
    Frame frame;
    frame.width = frame.height = 8;
    frame.viewport = {0, 0, 8, 8};
    frame.background = {1, 0, 1, 1};
    ASSERT_TRUE(device->render(frame, pixels));
    EXPECT_TRUE(pixels.empty());
  }
  window.read(pixels);
  EXPECT_EQ(std::vector<unsigned char>(pixels.begin(), pixels.begin() + 4),
            (std::vector<unsigned char>{255, 0, 255, 255}));
}
