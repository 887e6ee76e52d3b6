// SPDX-License-Identifier: BSD-3-Clause
#include "render/GlDevice.h"

#include <dlfcn.h>
#include <epoxy/egl.h>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace nx::render {

namespace {

constexpr size_t maxLights = 8;

enum TextureUnit : GLint { UnitTexture, UnitFaceColor, UnitFaceNormal, UnitPrimitiveFace, UnitSegmentStart };
enum Attribute : GLuint { AttributePosition, AttributeNormal, AttributeColor, AttributeTexCoord };

Matrix multiply(const Matrix& a, const Matrix& b) {
  Matrix product{};
  for (size_t column = 0; column < 4; ++column) {
    for (size_t row = 0; row < 4; ++row) {
      for (size_t k = 0; k < 4; ++k)
        product[4 * column + row] += a[4 * k + row] * b[4 * column + k];
    }
  }
  return product;
}

/// The cofactors of the upper left 3x3 block: the inverse transpose up to a factor, and it exists for every matrix.
std::array<float, 9> normalMatrix(const Matrix& m) {
  const auto at = [&m](size_t row, size_t column) { return m[4 * column + row]; };
  std::array<float, 9> result{};
  for (size_t column = 0; column < 3; ++column) {
    for (size_t row = 0; row < 3; ++row) {
      const size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3, c1 = (column + 1) % 3, c2 = (column + 2) % 3;
      result[3 * column + row] = at(r1, c1) * at(r2, c2) - at(r1, c2) * at(r2, c1);
    }
  }
  return result;
}

std::array<float, 3> unitDirection(const Matrix& view, const std::array<float, 3>& d) {
  std::array<float, 3> eye{};
  for (size_t row = 0; row < 3; ++row)
    eye[row] = view[row] * d[0] + view[4 + row] * d[1] + view[8 + row] * d[2];
  const float length = std::sqrt(eye[0] * eye[0] + eye[1] * eye[1] + eye[2] * eye[2]);
  if (length > 0) {
    for (float& c : eye)
      c /= length;
  }
  return eye;
}

bool isMirroring(const Matrix& m) {
  const std::array<float, 9> cofactors = normalMatrix(m);
  return m[0] * cofactors[0] + m[4] * cofactors[3] + m[8] * cofactors[6] < 0;
}

Rules rulesOf(const DrawRecord& record) {
  Rules rules = 0;
  const bool hasFaces = record.primitivesPerFace != 0 || !record.primitiveFace.empty();
  if (record.lit) {
    rules |= RuleLit;
    if (!record.normal.empty())
      rules |= RuleVertexNormal;
    else if (!record.faceNormal.empty() && hasFaces)
      rules |= RuleFaceNormal;
    else if (record.constantNormal != std::array<float, 3>{})
      rules |= RuleConstantNormal;
  }
  if (!record.color.empty())
    rules |= RuleVertexColor;
  else if (!record.faceColor.empty() && hasFaces)
    rules |= RuleFaceColor;
  if (!record.texture.empty() && !record.texCoord.empty()) rules |= RuleTexture;
  if (record.primitive == Primitive::Segments) {
    rules |= RuleLines;
    if (record.linePattern != 0xFFFF) rules |= RulePattern;
  }
  if (record.primitive == Primitive::Points) rules |= RulePoints;
  return rules;
}

std::atomic<uint64_t> lastSourceId{0};

/// Asked before the first GL call, which would end the process without a context. GLX is asked only where it is loaded
/// already: without it nobody can have made such a context.
bool hasCurrentContext() {
  if (eglGetCurrentContext() != EGL_NO_CONTEXT) return true;
  for (const char* library : {"libGLX.so.0", "libGL.so.1"}) {
    void* handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr) continue;
    const auto getCurrent = reinterpret_cast<void* (*)()>(dlsym(handle, "glXGetCurrentContext"));
    const bool isCurrent = getCurrent != nullptr && getCurrent() != nullptr;
    dlclose(handle);
    if (isCurrent) return true;
  }
  return false;
}

} // namespace

Source::Source()
    : m_id(++lastSourceId) {}

/// All GL objects of the device, and what was last set, so that it is not set again.
struct GlDevice::Resources {
  explicit Resources(MessageFunction message)
      : programs(message) {
    glGenVertexArrays(1, &vertexArray);
  }
  ~Resources() { glDeleteVertexArrays(1, &vertexArray); }
  Resources(const Resources&) = delete;
  Resources& operator=(const Resources&) = delete;

  void bindAttribute(Attribute attribute, const Array& array, NxRenderStatistics& statistics) {
    if (array.empty()) {
      glDisableVertexAttribArray(attribute);
      return;
    }
    glBindBuffer(GL_ARRAY_BUFFER, buffers.buffer(array, statistics));
    glEnableVertexAttribArray(attribute);
    if (attribute == AttributeColor)
      glVertexAttribIPointer(attribute, 1, GL_UNSIGNED_INT, 0, nullptr);
    else
      glVertexAttribPointer(attribute, attribute == AttributeTexCoord ? 2 : 3, GL_FLOAT, GL_FALSE, 0, nullptr);
  }

  void bindBufferTexture(TextureUnit unit, const Array& array, GLenum format, NxRenderStatistics& statistics) {
    // The unit comes first: making the texture binds it to the active one.
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_BUFFER, buffers.bufferTexture(array, format, statistics));
  }

  void useProgram(const Program& program, const Frame& frame);
  void useView(const Frame& frame, const DrawRecord& record);
  void useMaterial(const Material& material);

  ProgramCache programs;
  BufferCache buffers;
  RenderTarget target;
  GLuint vertexArray = 0;
  const Program* program = nullptr;
  bool viewIsSet = false, materialIsSet = false;
  uint32_t view = 0, lightSet = 0;
  Material material;
};

void GlDevice::Resources::useProgram(const Program& wanted, const Frame& frame) {
  if (program == &wanted) return;
  program = &wanted;
  viewIsSet = materialIsSet = false;
  glUseProgram(wanted.id);
  const auto& at = wanted.location;
  glUniform1i(at[UniformTexture], UnitTexture);
  glUniform1i(at[UniformFaceColor], UnitFaceColor);
  glUniform1i(at[UniformFaceNormal], UnitFaceNormal);
  glUniform1i(at[UniformPrimitiveFace], UnitPrimitiveFace);
  glUniform1i(at[UniformSegmentStart], UnitSegmentStart);
  glUniform2f(at[UniformViewportSize], static_cast<float>(frame.viewport[2]), static_cast<float>(frame.viewport[3]));
  glUniform3fv(at[UniformAmbientLight], 1, frame.ambientLight.data());
}

void GlDevice::Resources::useView(const Frame& frame, const DrawRecord& record) {
  if (viewIsSet && view == record.view && lightSet == record.lightSet) return;
  viewIsSet = true;
  view = record.view;
  lightSet = record.lightSet;
  const View& camera = frame.views[view];
  glUniformMatrix4fv(program->location[UniformProjection], 1, GL_FALSE, camera.projection.data());
  const std::vector<DirectionalLight>& lights = frame.lightSets[lightSet];
  const size_t count = std::min(lights.size(), maxLights);
  std::array<float, 3 * maxLights> directions{}, colors{};
  for (size_t i = 0; i < count; ++i) {
    const std::array<float, 3> direction = unitDirection(camera.view, lights[i].direction);
    std::copy(direction.begin(), direction.end(), directions.begin() + static_cast<std::ptrdiff_t>(3 * i));
    std::copy(lights[i].color.begin(), lights[i].color.end(), colors.begin() + static_cast<std::ptrdiff_t>(3 * i));
  }
  glUniform1i(program->location[UniformNumLights], static_cast<GLint>(count));
  glUniform3fv(program->location[UniformLightDirection], maxLights, directions.data());
  glUniform3fv(program->location[UniformLightColor], maxLights, colors.data());
}

void GlDevice::Resources::useMaterial(const Material& wanted) {
  if (materialIsSet && material == wanted) return;
  materialIsSet = true;
  material = wanted;
  const auto& at = program->location;
  glUniform4fv(at[UniformDiffuse], 1, wanted.diffuse.data());
  glUniform3fv(at[UniformAmbient], 1, wanted.ambient.data());
  glUniform3fv(at[UniformSpecular], 1, wanted.specular.data());
  glUniform3fv(at[UniformEmissive], 1, wanted.emissive.data());
  glUniform1f(at[UniformShininess], wanted.shininess);
}

GlDevice::GlDevice(std::unique_ptr<Context> context, MessageFunction message)
    : m_context(std::move(context))
    , m_message(message) {}

GlDevice::~GlDevice() {
  const ContextScope scope(*m_context);
  if (scope) m_resources.reset();
  // Without its context the objects are gone already; only their names would be deleted, in someone else's context.
  else
    m_resources.release();
}

bool GlDevice::start() {
  const ContextScope scope(*m_context);
  if (!scope) {
    m_message("GlDevice::start", "the context cannot be made current");
    return false;
  }
  if (!hasCurrentContext()) {
    m_message("GlDevice::start", "no OpenGL context is current");
    return false;
  }
  const int version = epoxy_gl_version();
  if (!epoxy_is_desktop_gl() || version < 41) {
    m_message("GlDevice::start", "OpenGL 4.1 is needed, the context has version " + std::to_string(version / 10) + "." +
                                     std::to_string(version % 10));
    return false;
  }
  glGetIntegerv(GL_MAX_SAMPLES, &m_maxSamples);
  glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &m_maxSize);
  glGetIntegerv(GL_MAX_TEXTURE_BUFFER_SIZE, &m_maxBufferTexels);
  m_resources = std::make_unique<Resources>(m_message);
  return true;
}

bool GlDevice::prepareTarget(const Frame& frame) {
  const int samples = std::clamp(frame.samples, 0, m_maxSamples);
  if (frame.width > 0 && frame.height > 0 && frame.width <= m_maxSize && frame.height <= m_maxSize &&
      m_resources->target.resize(frame.width, frame.height, samples))
    return true;
  m_message("GlDevice::render", "no framebuffer of " + std::to_string(frame.width) + " x " +
                                    std::to_string(frame.height) + " pixels can be had (at most " +
                                    std::to_string(m_maxSize) + " each way)");
  return false;
}

std::vector<const DrawRecord*> GlDevice::sorted(const Frame& frame) const {
  struct Keyed {
    Rules rules;
    const DrawRecord* record;
  };
  std::vector<Keyed> keyed;
  keyed.reserve(frame.records.size());
  for (const DrawRecord& record : frame.records) {
    if (isDrawable(record)) keyed.push_back({rulesOf(record), &record});
  }
  // Stable, so that what costs no change of program or material stays in the graph's order.
  std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
    if (a.rules != b.rules) return a.rules < b.rules;
    if (a.record->view != b.record->view) return a.record->view < b.record->view;
    if (a.record->lightSet != b.record->lightSet) return a.record->lightSet < b.record->lightSet;
    return a.record->material < b.record->material;
  });
  std::vector<const DrawRecord*> records;
  records.reserve(keyed.size());
  for (const Keyed& entry : keyed)
    records.push_back(entry.record);
  return records;
}

bool GlDevice::isDrawable(const DrawRecord& record) const {
  if (record.indices.empty() || record.position.empty()) return false;
  size_t texels = 0;
  for (const Array* array : {&record.faceColor, &record.faceNormal, &record.primitiveFace, &record.segmentStart})
    texels = std::max(texels, array->count());
  if (texels <= static_cast<size_t>(m_maxBufferTexels)) return true;
  m_message("GlDevice::render", "a shape with " + std::to_string(texels) +
                                    " values per face is left out: this device takes " +
                                    std::to_string(m_maxBufferTexels));
  return false;
}

bool GlDevice::render(const Frame& frame, std::vector<unsigned char>& pixels) {
  const ContextScope scope(*m_context);
  if (!scope) {
    m_message("GlDevice::render", "the context cannot be made current");
    return false;
  }
  GLint window = 0;
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &window);
  m_frameStatistics = {};
  m_resources->buffers.sweep();
  if (!prepareTarget(frame)) {
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(window));
    return false;
  }
  const std::vector<const DrawRecord*> records = sorted(frame);

  RenderTarget& target = m_resources->target;
  glBindVertexArray(m_resources->vertexArray);
  glEnable(GL_MULTISAMPLE);
  glEnable(GL_PROGRAM_POINT_SIZE);
  glDisable(GL_SCISSOR_TEST);
  glDisable(GL_BLEND);
  glEnable(GL_DEPTH_TEST);
  glDepthFunc(GL_LEQUAL);
  glDepthMask(GL_TRUE);
  target.bindOpaque();
  glClearBufferfv(GL_COLOR, 0, frame.background.data());
  const float farthest = 1.0F;
  glClearBufferfv(GL_DEPTH, 0, &farthest);
  glViewport(frame.viewport[0], frame.viewport[1], frame.viewport[2], frame.viewport[3]);
  drawPass(frame, records, Pass::Opaque);
  target.resolveOpaque();

  const bool hasTranslucent =
      std::any_of(records.begin(), records.end(), [](const DrawRecord* r) { return r->opacity != Opacity::Opaque; });
  if (hasTranslucent && target.bindBlended()) {
    drawPass(frame, records, Pass::Translucent);
    compositeBlended();
  }
  glBindVertexArray(0);
  glUseProgram(0);
  m_resources->program = nullptr;

  if (m_context->isOffscreen()) {
    target.read(pixels);
  } else {
    target.bindResult();
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(window));
    glBlitFramebuffer(0, 0, frame.width, frame.height, 0, 0, frame.width, frame.height, GL_COLOR_BUFFER_BIT,
                      GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(window));
  }
  finishStatistics();
  return true;
}

void GlDevice::drawPass(const Frame& frame, const std::vector<const DrawRecord*>& records, Pass pass) {
  if (pass == Pass::Translucent) {
    // The sums: colour and weight are added up, what shines through is multiplied.
    const float nothing[4] = {0, 0, 0, 0};
    const float everything[4] = {1, 1, 1, 1};
    glClearBufferfv(GL_COLOR, 0, nothing);
    glClearBufferfv(GL_COLOR, 1, everything);
    glEnable(GL_BLEND);
    glBlendFunci(0, GL_ONE, GL_ONE);
    glBlendFunci(1, GL_ZERO, GL_ONE_MINUS_SRC_COLOR);
    glDepthMask(GL_FALSE);
  }
  for (const DrawRecord* record : records) {
    if (record->opacity == Opacity::Mixed || (record->opacity == Opacity::Opaque) == (pass == Pass::Opaque))
      draw(frame, *record, pass);
  }
  glDisable(GL_BLEND);
  glDisable(GL_CULL_FACE);
  glDisable(GL_POLYGON_OFFSET_FILL);
  glDepthMask(GL_TRUE);
}

void GlDevice::draw(const Frame& frame, const DrawRecord& record, Pass pass) {
  const Rules rules = rulesOf(record) | (pass == Pass::Translucent ? Rules{RuleBlended} : Rules{0});
  const Program& program = m_resources->programs.get(rules, m_frameStatistics);
  if (program.id == 0) return;
  m_resources->useProgram(program, frame);
  m_resources->useView(frame, record);
  m_resources->useMaterial(record.material);

  const auto& at = program.location;
  const Matrix modelView = multiply(frame.views[record.view].view, record.model);
  const std::array<float, 9> normals = normalMatrix(modelView);
  glUniformMatrix4fv(at[UniformModelView], 1, GL_FALSE, modelView.data());
  glUniformMatrix3fv(at[UniformNormalMatrix], 1, GL_FALSE, normals.data());
  glUniform3fv(at[UniformConstantNormal], 1, record.constantNormal.data());
  glUniform1i(at[UniformAlphaPass], record.opacity == Opacity::Mixed ? static_cast<GLint>(pass) : 0);
  glUniform1f(at[UniformPointSize], record.pointSize);
  glUniform1f(at[UniformLineWidth], record.lineWidth);

  m_resources->bindAttribute(AttributePosition, record.position, m_frameStatistics);
  const Array none;
  m_resources->bindAttribute(AttributeNormal, (rules & RuleVertexNormal) != 0 ? record.normal : none,
                             m_frameStatistics);
  m_resources->bindAttribute(AttributeColor, record.color, m_frameStatistics);
  m_resources->bindAttribute(AttributeTexCoord, (rules & RuleTexture) != 0 ? record.texCoord : none, m_frameStatistics);
  if ((rules & (RuleFaceColor | RuleFaceNormal)) != 0) {
    if ((rules & RuleFaceColor) != 0)
      m_resources->bindBufferTexture(UnitFaceColor, record.faceColor, GL_R32UI, m_frameStatistics);
    if ((rules & RuleFaceNormal) != 0)
      m_resources->bindBufferTexture(UnitFaceNormal, record.faceNormal, GL_RGB32F, m_frameStatistics);
    glUniform1i(at[UniformPrimitivesPerFace], static_cast<GLint>(record.primitivesPerFace));
    if (record.primitivesPerFace == 0)
      m_resources->bindBufferTexture(UnitPrimitiveFace, record.primitiveFace, GL_R32UI, m_frameStatistics);
  }
  if ((rules & RulePattern) != 0) {
    glUniform1ui(at[UniformPattern], record.linePattern);
    glUniform1f(at[UniformPatternScale], static_cast<float>(std::max(record.linePatternScale, 1)));
    glUniform1i(at[UniformHasSegmentStart], record.segmentStart.empty() ? 0 : 1);
    if (!record.segmentStart.empty())
      m_resources->bindBufferTexture(UnitSegmentStart, record.segmentStart, GL_R32F, m_frameStatistics);
  }
  if ((rules & RuleTexture) != 0) {
    glActiveTexture(GL_TEXTURE0 + UnitTexture);
    glBindTexture(GL_TEXTURE_2D, m_resources->buffers.texture(record.texture, m_frameStatistics));
  }

  if (record.cullBack && record.primitive == Primitive::Triangles) {
    glEnable(GL_CULL_FACE);
    glFrontFace(record.clockwise != isMirroring(modelView) ? GL_CW : GL_CCW);
  } else {
    glDisable(GL_CULL_FACE);
  }
  if (record.offset) {
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(record.offsetFactor, record.offsetUnits);
  } else {
    glDisable(GL_POLYGON_OFFSET_FILL);
  }

  static constexpr GLenum modes[] = {GL_TRIANGLES, GL_LINES, GL_POINTS};
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_resources->buffers.buffer(record.indices, m_frameStatistics));
  glDrawElements(modes[static_cast<size_t>(record.primitive)], static_cast<GLsizei>(record.indices.count()),
                 GL_UNSIGNED_INT, nullptr);
  ++m_frameStatistics.drawCalls;
}

void GlDevice::compositeBlended() {
  const RenderTarget& target = m_resources->target;
  target.resolveBlended();
  target.bindResult();
  const Program& program = m_resources->programs.get(RuleComposite, m_frameStatistics);
  if (program.id == 0) return;
  m_resources->program = nullptr;
  glUseProgram(program.id);
  glUniform1i(program.location[UniformSum], 0);
  glUniform1i(program.location[UniformReveal], 1);
  glActiveTexture(GL_TEXTURE1);
  glBindTexture(GL_TEXTURE_2D, target.revealTexture());
  glActiveTexture(GL_TEXTURE0);
  glBindTexture(GL_TEXTURE_2D, target.sumTexture());
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  for (GLuint attribute = AttributePosition; attribute <= AttributeTexCoord; ++attribute)
    glDisableVertexAttribArray(attribute);
  glDrawArrays(GL_TRIANGLES, 0, 3);
  glDisable(GL_BLEND);
  glEnable(GL_DEPTH_TEST);
}

void GlDevice::finishStatistics() {
  m_frameStatistics.buffersHeld = m_resources->buffers.size();
  m_totalStatistics.buffersUploaded += m_frameStatistics.buffersUploaded;
  m_totalStatistics.bytesUploaded += m_frameStatistics.bytesUploaded;
  m_totalStatistics.drawCalls += m_frameStatistics.drawCalls;
  m_totalStatistics.programsBuilt += m_frameStatistics.programsBuilt;
  m_totalStatistics.buffersHeld = m_frameStatistics.buffersHeld;
}

namespace {

/// The context that the application has made current; nothing to enter or to leave.
class WindowContext final : public Context {
public:
  bool enter() override { return true; }
  void leave() override {}
  bool isOffscreen() const override { return false; }
};

std::unique_ptr<Device> makeDevice(std::unique_ptr<Context> context, MessageFunction message) {
  if (!context) return nullptr;
  auto device = std::make_unique<GlDevice>(std::move(context), message);
  if (!device->start()) return nullptr;
  return device;
}

} // namespace

std::unique_ptr<Device> makeOffscreenDevice(const std::string& platform, MessageFunction message) {
  return makeDevice(makeEglContext(platform, message), message);
}

std::unique_ptr<Device> makeWindowDevice(MessageFunction message) {
  return makeDevice(std::make_unique<WindowContext>(), message);
}

} // namespace nx::render
