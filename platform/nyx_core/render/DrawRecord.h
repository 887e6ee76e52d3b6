// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace nx::render {

/// The identity of something whose arrays are kept in graphics buffers. Who owns the arrays holds one through a
/// SourceRef; when the last reference is gone, each device frees the buffers at its next frame.
class Source {
public:
  Source();
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  /// Unique in the process, and never used again.
  uint64_t id() const { return m_id; }

private:
  uint64_t m_id;
};
using SourceRef = std::shared_ptr<const Source>;

/// The arrays that one source may own.
enum class Stream : uint8_t {
  Position,     ///< 3 floats a vertex
  Normal,       ///< 3 floats a vertex
  Color,        ///< 32-bit 0xRRGGBBAA a vertex
  TexCoord,     ///< 2 floats a vertex
  FaceColor,    ///< 32-bit 0xRRGGBBAA a face
  FaceNormal,   ///< 3 floats a face
  Triangles,    ///< 3 vertex numbers a triangle
  TriangleFace, ///< 1 face number a triangle
  Segments,     ///< 2 vertex numbers a segment
  SegmentFace,  ///< 1 face number a segment
  SegmentStart, ///< 1 float a segment: length of its polyline up to it
  Points,       ///< 1 vertex number a point
  PointFace,    ///< 1 face number a point
  Image         ///< pixels of a texture
};

/// One array as it lies in the memory of its owner. A device reads it during render() only, and only when the buffer
/// that it keeps for (source, stream) was filled from another change. The content is the first `headCount` elements,
/// followed by the elements that `gather` numbers.
struct Array {
  SourceRef source;
  Stream stream = Stream::Position;
  uint64_t change = 0;
  const void* data = nullptr;
  size_t elementSize = 0;
  size_t headCount = 0;
  const uint32_t* gather = nullptr;
  size_t gatherCount = 0;

  size_t count() const { return headCount + gatherCount; }
  bool empty() const { return count() == 0; }
};

/// An image for a texture: rows from the bottom up, 1 to 4 bytes a pixel.
struct Texture {
  SourceRef source;
  uint64_t change = 0;
  const unsigned char* pixels = nullptr;
  int width = 0, height = 0, components = 0;
  int wrapS = 0, wrapT = 0, minFilter = 0, magFilter = 0; ///< by their OpenGL numbers
  bool empty() const { return pixels == nullptr || width <= 0 || height <= 0; }
};

using Matrix = std::array<float, 16>; ///< as OpenGL takes it: column by column, vectors on the right

struct View {
  Matrix view{};       ///< world to eye
  Matrix projection{}; ///< eye to clip space
  bool operator==(const View&) const = default;
};

struct DirectionalLight {
  std::array<float, 3> direction{}; ///< the way the light travels, in world space
  std::array<float, 3> color{};     ///< times its intensity
  bool operator==(const DirectionalLight&) const = default;
};

struct Material {
  std::array<float, 3> ambient{0.2F, 0.2F, 0.2F};
  std::array<float, 4> diffuse{0.8F, 0.8F, 0.8F, 1.0F}; ///< with alpha
  std::array<float, 3> specular{};
  std::array<float, 3> emissive{};
  float shininess = 0.2F; ///< 0 to 1
  auto operator<=>(const Material&) const = default;
};

enum class Primitive : uint8_t { Triangles, Segments, Points };

/// Whether parts of a shape can be seen through.
enum class Opacity : uint8_t { Opaque, Translucent, Mixed };

/// One shape, ready to be drawn.
struct DrawRecord {
  Primitive primitive = Primitive::Triangles;
  Array position, normal, color, texCoord; ///< empty where not there
  Array indices;
  Array faceColor, faceNormal; ///< values per face
  Array primitiveFace;         ///< face of each primitive, unless primitivesPerFace tells it
  uint32_t primitivesPerFace = 0;
  Array segmentStart;                    ///< only with a line pattern
  std::array<float, 3> constantNormal{}; ///< used when it is not zero and there is no other normal
  Texture texture;
  bool lit = true;
  Opacity opacity = Opacity::Opaque;
  bool cullBack = false;
  bool clockwise = false;
  bool offset = false;
  float offsetFactor = 0, offsetUnits = 0;
  float pointSize = 1, lineWidth = 1; ///< pixels
  uint16_t linePattern = 0xFFFF;      ///< bit 0 first
  int linePatternScale = 1;           ///< pixels a bit
  Material material;
  Matrix model{};
  uint32_t view = 0;                     ///< index into Frame::views
  uint32_t lightSet = 0;                 ///< index into Frame::lightSets
  std::shared_ptr<const void> keepAlive; ///< owner of derived arrays
};

/// All that is drawn in one picture.
struct Frame {
  int width = 0, height = 0;                   ///< of the whole picture, in pixels
  std::array<int, 4> viewport{};               ///< x, y of the lower left corner, width, height
  std::array<float, 4> background{0, 0, 0, 1}; ///< red, green, blue, alpha
  int samples = 0;                             ///< a pixel; clamped to what the device can do
  std::array<float, 3> ambientLight{0.2F, 0.2F, 0.2F};
  std::vector<View> views;
  std::vector<std::vector<DirectionalLight>> lightSets;
  std::vector<DrawRecord> records;
};

} // namespace nx::render
