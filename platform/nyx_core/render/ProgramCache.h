// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "render/Device.h"
#include "render/Rules.h"

#include <epoxy/gl.h>

#include <array>
#include <unordered_map>

namespace nx::render {

/// The uniforms of all programs, in the order of `uniformNames`.
enum Uniform : size_t {
  UniformModelView,
  UniformProjection,
  UniformNormalMatrix,
  UniformPointSize,
  UniformViewportSize,
  UniformLineWidth,
  UniformSegmentStart,
  UniformHasSegmentStart,
  UniformConstantNormal,
  UniformDiffuse,
  UniformAmbient,
  UniformSpecular,
  UniformEmissive,
  UniformShininess,
  UniformAmbientLight,
  UniformNumLights,
  UniformLightDirection,
  UniformLightColor,
  UniformAlphaPass,
  UniformFaceColor,
  UniformFaceNormal,
  UniformPrimitiveFace,
  UniformPrimitivesPerFace,
  UniformTexture,
  UniformPattern,
  UniformPatternScale,
  UniformSum,
  UniformReveal,
  NumUniforms
};

struct Program {
  GLuint id = 0; ///< 0: could not be built
  std::array<GLint, NumUniforms> location{};
};

/// Builds programs from rules, each once. Used and destroyed with its context current.
class ProgramCache {
public:
  explicit ProgramCache(MessageFunction message)
      : m_message(message) {}
  ~ProgramCache();
  ProgramCache(const ProgramCache&) = delete;
  ProgramCache& operator=(const ProgramCache&) = delete;

  /// A failure is posted once, with the compiler's log; the program's id is 0 from then on.
  const Program& get(Rules rules, NxRenderStatistics& statistics);

private:
  GLuint build(Rules rules);
  GLuint compile(GLenum stage, const char* stageName, const std::string& text, Rules rules);

  MessageFunction m_message;
  std::unordered_map<Rules, Program> m_programs;
};

} // namespace nx::render
