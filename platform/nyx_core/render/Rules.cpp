// SPDX-License-Identifier: BSD-3-Clause
#include "render/Rules.h"

namespace nx::render {

namespace {

struct RuleName {
  Rule rule;
  const char* name;   // for people
  const char* define; // for the shader texts
};
constexpr RuleName names[] = {
    {RuleLit, "lit", "LIT"},
    {RuleVertexNormal, "vertex normal", "VERTEX_NORMAL"},
    {RuleFaceNormal, "face normal", "FACE_NORMAL"},
    {RuleConstantNormal, "constant normal", "CONSTANT_NORMAL"},
    {RuleVertexColor, "vertex colour", "VERTEX_COLOR"},
    {RuleFaceColor, "face colour", "FACE_COLOR"},
    {RuleTexture, "texture", "TEXTURE"},
    {RuleLines, "lines", "LINES"},
    {RulePattern, "pattern", "PATTERN"},
    {RulePoints, "points", "POINTS"},
    {RuleBlended, "blended", "BLENDED"},
    {RuleComposite, "composite", "COMPOSITE"},
};

constexpr const char* vertexText = R"(
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec3 aNormal;
layout(location = 2) in uint aColor;
layout(location = 3) in vec2 aTexCoord;
uniform mat4 uModelView;
uniform mat4 uProjection;
uniform mat3 uNormalMatrix;
uniform float uPointSize;
out Varyings {
  vec3 eye;
  vec3 normal;
  vec4 color;
  vec2 texCoord;
} v;

void main() {
  vec4 eye = uModelView * vec4(aPosition, 1.0);
  gl_Position = uProjection * eye;
  v.eye = eye.xyz;
#ifdef VERTEX_NORMAL
  v.normal = uNormalMatrix * aNormal;
#else
  v.normal = vec3(0.0);
#endif
#ifdef VERTEX_COLOR
  v.color = vec4((aColor >> 24) & 255u, (aColor >> 16) & 255u, (aColor >> 8) & 255u, aColor & 255u) / 255.0;
#else
  v.color = vec4(1.0);
#endif
#ifdef TEXTURE
  v.texCoord = aTexCoord;
#else
  v.texCoord = vec2(0.0);
#endif
#ifdef POINTS
  gl_PointSize = uPointSize;
#endif
}
)";

// A segment becomes a quad across its direction on the screen. It is cut at the near side of the eye first, as points
// behind the eye have no place on the screen.
constexpr const char* geometryText = R"(
layout(lines) in;
layout(triangle_strip, max_vertices = 4) out;
uniform vec2 uViewportSize;
uniform float uLineWidth;
#ifdef PATTERN
uniform samplerBuffer uSegmentStart;
uniform bool uHasSegmentStart;
noperspective out float patternPosition;
#endif
in Varyings {
  vec3 eye;
  vec3 normal;
  vec4 color;
  vec2 texCoord;
} segment[];
out Varyings {
  vec3 eye;
  vec3 normal;
  vec4 color;
  vec2 texCoord;
} v;

void corner(vec4 position, vec2 shift, float t, float along) {
  gl_Position = position + vec4(shift * position.w, 0.0, 0.0);
  gl_PrimitiveID = gl_PrimitiveIDIn;
  v.eye = mix(segment[0].eye, segment[1].eye, t);
  v.normal = mix(segment[0].normal, segment[1].normal, t);
  v.color = mix(segment[0].color, segment[1].color, t);
  v.texCoord = mix(segment[0].texCoord, segment[1].texCoord, t);
#ifdef PATTERN
  patternPosition = along;
#endif
  EmitVertex();
}

void main() {
  vec4 a = gl_in[0].gl_Position;
  vec4 b = gl_in[1].gl_Position;
  float da = a.z + a.w;
  float db = b.z + b.w;
  if (da < 0.0 && db < 0.0) return;
  float ta = da < 0.0 ? da / (da - db) : 0.0;
  float tb = db < 0.0 ? da / (da - db) : 1.0;
  vec4 p = mix(a, b, ta);
  vec4 q = mix(a, b, tb);
  if (p.w <= 0.0 || q.w <= 0.0) return;
  vec2 direction = (q.xy / q.w - p.xy / p.w) * 0.5 * uViewportSize;
  float pixels = length(direction);
  direction = pixels > 0.0 ? direction / pixels : vec2(1.0, 0.0);
  vec2 across = vec2(-direction.y, direction.x) * uLineWidth / uViewportSize;
  float begin = 0.0;
#ifdef PATTERN
  float world = length(mix(segment[1].eye, segment[0].eye, ta) - mix(segment[1].eye, segment[0].eye, tb));
  if (uHasSegmentStart && world > 0.0) begin = texelFetch(uSegmentStart, gl_PrimitiveIDIn).r * pixels / world;
#endif
  corner(p, across, ta, begin);
  corner(p, -across, ta, begin);
  corner(q, across, tb, begin + pixels);
  corner(q, -across, tb, begin + pixels);
  EndPrimitive();
}
)";

// Weights of translucent fragments after M. McGuire and L. Bavoil, "Weighted Blended Order-Independent Transparency",
// Journal of Computer Graphics Techniques 2(2), 2013.
constexpr const char* fragmentText = R"(
in Varyings {
  vec3 eye;
  vec3 normal;
  vec4 color;
  vec2 texCoord;
} v;
uniform mat4 uProjection;
uniform mat3 uNormalMatrix;
uniform vec3 uConstantNormal;
uniform vec4 uDiffuse;
uniform vec3 uAmbient;
uniform vec3 uSpecular;
uniform vec3 uEmissive;
uniform float uShininess;
uniform vec3 uAmbientLight;
uniform int uNumLights;
uniform vec3 uLightDirection[MAX_LIGHTS];
uniform vec3 uLightColor[MAX_LIGHTS];
uniform int uAlphaPass;
uniform usamplerBuffer uFaceColor;
uniform samplerBuffer uFaceNormal;
uniform usamplerBuffer uPrimitiveFace;
uniform int uPrimitivesPerFace;
uniform sampler2D uTexture;
#ifdef PATTERN
noperspective in float patternPosition;
uniform uint uPattern;
uniform float uPatternScale;
#endif
#ifdef BLENDED
layout(location = 0) out vec4 oSum;
layout(location = 1) out float oReveal;
#else
layout(location = 0) out vec4 oColor;
#endif

int face() {
  return uPrimitivesPerFace > 0 ? gl_PrimitiveID / uPrimitivesPerFace
                                : int(texelFetch(uPrimitiveFace, gl_PrimitiveID).r);
}

vec3 toEye() { return uProjection[3][3] == 1.0 ? vec3(0.0, 0.0, 1.0) : normalize(-v.eye); }

// Both sides are lit alike: the normal is turned to the side that the eye sees, which the triangle itself tells.
vec3 shadingNormal(vec3 eyeward) {
#if defined(LINES) || defined(POINTS)
  vec3 side = eyeward;
#else
  vec3 side = cross(dFdx(v.eye), dFdy(v.eye));
  float sideLength = length(side);
  side = sideLength > 0.0 ? side / sideLength : eyeward;
  if (dot(side, eyeward) < 0.0) side = -side;
#endif
#if defined(VERTEX_NORMAL)
  vec3 n = v.normal;
#elif defined(FACE_NORMAL)
  vec3 n = uNormalMatrix * texelFetch(uFaceNormal, face()).xyz;
#elif defined(CONSTANT_NORMAL)
  vec3 n = uNormalMatrix * uConstantNormal;
#else
  vec3 n = side;
#endif
  float nLength = length(n);
  n = nLength > 0.0 ? n / nLength : side;
  return dot(n, side) < 0.0 ? -n : n;
}

void main() {
#ifdef PATTERN
  if (((uPattern >> (uint(patternPosition / uPatternScale) & 15u)) & 1u) == 0u) discard;
#endif
  vec4 base = uDiffuse;
#if defined(VERTEX_COLOR)
  base = v.color;
#elif defined(FACE_COLOR)
  uint rgba = texelFetch(uFaceColor, face()).r;
  base = vec4((rgba >> 24) & 255u, (rgba >> 16) & 255u, (rgba >> 8) & 255u, rgba & 255u) / 255.0;
#endif
#ifdef TEXTURE
  base *= texture(uTexture, v.texCoord);
#endif
  if (uAlphaPass == 1 && base.a < 0.998) discard;
  if (uAlphaPass == 2 && base.a >= 0.998) discard;
#ifdef LIT
  vec3 eyeward = toEye();
  vec3 n = shadingNormal(eyeward);
  vec3 color = uEmissive + uAmbientLight * uAmbient;
  for (int i = 0; i < uNumLights; ++i) {
    vec3 l = -uLightDirection[i];
    float cosine = dot(n, l);
    if (cosine <= 0.0) continue;
    color += uLightColor[i] * cosine * base.rgb;
    float shine = max(dot(n, normalize(l + eyeward)), 0.0);
    color += uLightColor[i] * uSpecular * pow(shine, max(uShininess * 128.0, 1.0));
  }
  color = clamp(color, 0.0, 1.0);
#else
  vec3 color = base.rgb;
#endif
#ifdef BLENDED
  float depth = 1.0 - gl_FragCoord.z * 0.9;
  float weight = clamp(base.a * max(1e-2, 3e3 * depth * depth * depth), 1e-2, 3e3);
  oSum = vec4(color * base.a, base.a) * weight;
  oReveal = base.a;
#else
  oColor = vec4(color, 1.0);
#endif
}
)";

constexpr const char* compositeVertexText = R"(
void main() { gl_Position = vec4(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0, 0.0, 1.0); }
)";

constexpr const char* compositeFragmentText = R"(
uniform sampler2D uSum;
uniform sampler2D uReveal;
layout(location = 0) out vec4 oColor;

void main() {
  ivec2 pixel = ivec2(gl_FragCoord.xy);
  float reveal = texelFetch(uReveal, pixel, 0).r;
  if (reveal >= 1.0) discard;
  vec4 sum = texelFetch(uSum, pixel, 0);
  oColor = vec4(sum.rgb / max(sum.a, 1e-5), 1.0 - reveal);
}
)";

} // namespace

std::string ruleNames(Rules rules) {
  std::string text;
  for (const RuleName& entry : names) {
    if ((rules & entry.rule) != 0) text += (text.empty() ? "" : "+") + std::string(entry.name);
  }
  return text.empty() ? "plain" : text;
}

ShaderText shaderText(Rules rules) {
  std::string head = "#version 410 core\n#define MAX_LIGHTS 8\n";
  for (const RuleName& entry : names) {
    if ((rules & entry.rule) != 0) head += "#define " + std::string(entry.define) + "\n";
  }
  if ((rules & RuleComposite) != 0) return {head + compositeVertexText, {}, head + compositeFragmentText};
  return {head + vertexText, (rules & RuleLines) != 0 ? head + geometryText : std::string(), head + fragmentText};
}

} // namespace nx::render
