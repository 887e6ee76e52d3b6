// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <string>

namespace nx::render {

/// What a program does beyond drawing triangles in the material's diffuse colour. A program is a set of these.
enum Rule : uint32_t {
  RuleLit = 1U << 0,            ///< directional lights, two-sided
  RuleVertexNormal = 1U << 1,   ///< normal from the vertices; without any normal rule it is the triangle's own
  RuleFaceNormal = 1U << 2,     ///< normal per face from a buffer
  RuleConstantNormal = 1U << 3, ///< one normal for the shape
  RuleVertexColor = 1U << 4,
  RuleFaceColor = 1U << 5,  ///< colour per face from a buffer
  RuleTexture = 1U << 6,    ///< colour times a texture
  RuleLines = 1U << 7,      ///< segments as quads of a width in pixels
  RulePattern = 1U << 8,    ///< a 16-bit pattern along the segments
  RulePoints = 1U << 9,     ///< squares of a size in pixels
  RuleBlended = 1U << 10,   ///< writes the sums of order-independent transparency
  RuleComposite = 1U << 11, ///< the pass that puts those sums over the picture; alone
};
using Rules = uint32_t;

/// The rules' names, joined by "+"; "plain" for none.
std::string ruleNames(Rules rules);

/// The stages of a program; a stage that the rules do not need is empty.
struct ShaderText {
  std::string vertex, geometry, fragment;
};
ShaderText shaderText(Rules rules);

} // namespace nx::render
