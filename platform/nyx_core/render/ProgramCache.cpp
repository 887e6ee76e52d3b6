// SPDX-License-Identifier: BSD-3-Clause
#include "render/ProgramCache.h"

namespace nx::render {

namespace {

constexpr const char* uniformNames[NumUniforms] = {"uModelView",     "uProjection",        "uNormalMatrix",
                                                   "uPointSize",     "uViewportSize",      "uLineWidth",
                                                   "uSegmentStart",  "uHasSegmentStart",   "uConstantNormal",
                                                   "uDiffuse",       "uAmbient",           "uSpecular",
                                                   "uEmissive",      "uShininess",         "uAmbientLight",
                                                   "uNumLights",     "uLightDirection",    "uLightColor",
                                                   "uAlphaPass",     "uFaceColor",         "uFaceNormal",
                                                   "uPrimitiveFace", "uPrimitivesPerFace", "uTexture",
                                                   "uPattern",       "uPatternScale",      "uSum",
                                                   "uReveal"};

} // namespace

ProgramCache::~ProgramCache() {
  for (const auto& [rules, program] : m_programs)
    glDeleteProgram(program.id);
}

const Program& ProgramCache::get(Rules rules, NxRenderStatistics& statistics) {
  const auto [entry, isNew] = m_programs.try_emplace(rules);
  Program& program = entry->second;
  if (!isNew) return program;
  program.id = build(rules);
  if (program.id == 0) return program;
  ++statistics.programsBuilt;
  for (size_t i = 0; i < NumUniforms; ++i)
    program.location[i] = glGetUniformLocation(program.id, uniformNames[i]);
  return program;
}

GLuint ProgramCache::compile(GLenum stage, const char* stageName, const std::string& text, Rules rules) {
  const GLuint shader = glCreateShader(stage);
  const char* source = text.c_str();
  glShaderSource(shader, 1, &source, nullptr);
  glCompileShader(shader);
  GLint good = GL_FALSE;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &good);
  if (good == GL_TRUE) return shader;
  char log[2048] = "";
  glGetShaderInfoLog(shader, sizeof log, nullptr, log);
  m_message("ProgramCache::compile", std::string("the ") + stageName + " shader of the program \"" + ruleNames(rules) +
                                         "\" does not compile: " + log);
  glDeleteShader(shader);
  return 0;
}

GLuint ProgramCache::build(Rules rules) {
  const ShaderText text = shaderText(rules);
  struct Stage {
    GLenum kind;
    const char* name;
    const std::string& source;
  };
  const Stage stages[] = {{GL_VERTEX_SHADER, "vertex", text.vertex},
                          {GL_GEOMETRY_SHADER, "geometry", text.geometry},
                          {GL_FRAGMENT_SHADER, "fragment", text.fragment}};
  const GLuint program = glCreateProgram();
  bool compiled = true;
  for (const Stage& stage : stages) {
    if (stage.source.empty() || !compiled) continue;
    const GLuint shader = compile(stage.kind, stage.name, stage.source, rules);
    compiled = shader != 0;
    if (!compiled) continue;
    glAttachShader(program, shader);
    glDeleteShader(shader); // goes with the program
  }
  GLint linked = GL_FALSE;
  if (compiled) {
    glLinkProgram(program);
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked != GL_TRUE) {
      char log[2048] = "";
      glGetProgramInfoLog(program, sizeof log, nullptr, log);
      m_message("ProgramCache::build", "the program \"" + ruleNames(rules) + "\" does not link: " + log);
    }
  }
  if (linked == GL_TRUE) return program;
  glDeleteProgram(program);
  return 0;
}

} // namespace nx::render
