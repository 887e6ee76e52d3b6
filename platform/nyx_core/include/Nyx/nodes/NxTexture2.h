// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFImage.h>
#include <Nyx/nodes/NxPropertyNode.h>
#include <memory>

namespace nx::render {
class Source;
}

/// An image on the faces below. It needs texture coordinates (NxVertexProperty) and multiplies the colour.
class NYX_CORE_API NxTexture2 : public NxPropertyNode {
  NX_NODE_HEADER(NxTexture2);

public:
  NxTexture2();

  /// By their OpenGL numbers; CLAMP means CLAMP_TO_EDGE.
  enum Wrap { REPEAT = 10497, CLAMP = 10496, CLAMP_TO_EDGE = 33071, MIRRORED_REPEAT = 33648 };
  enum Filter {
    NEAREST = 9728,
    LINEAR = 9729,
    NEAREST_MIPMAP_NEAREST = 9984,
    LINEAR_MIPMAP_NEAREST = 9985,
    NEAREST_MIPMAP_LINEAR = 9986,
    LINEAR_MIPMAP_LINEAR = 9987
  };

  NxSFImage image;    ///< 1 to 4 bytes a pixel: grey, grey and alpha, RGB, RGBA; rows from the bottom up; empty
  NxSFEnum wrapS;     ///< REPEAT
  NxSFEnum wrapT;     ///< REPEAT
  NxSFEnum minFilter; ///< LINEAR
  NxSFEnum magFilter; ///< LINEAR

  /// What graphics devices know this image by.
  const std::shared_ptr<const nx::render::Source>& getRenderSource() const { return m_source; }
  /// True when a pixel of the image lets something through.
  bool isTranslucent() const;

  void doAction(NxAction* action) override;

protected:
  ~NxTexture2() override;

private:
  std::shared_ptr<const nx::render::Source> m_source;
  mutable uint64_t m_scannedChange = 0;
  mutable bool m_isTranslucent = false;
};
