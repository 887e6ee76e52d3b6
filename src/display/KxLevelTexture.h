// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/nodes/NxTexture2.h>

#include <cstddef>
#include <vector>

class KdLevelColorMapping;

/// A row of texels, one for each band of a level colour mapping, so that the borders between bands stay sharp within a
/// polygon.
class KxLevelTexture {
public:
  /// Makes a new texture when mapping, its time stamp or opacity differ from those shown. Returns whether the texture
  /// has changed; a null mapping takes it away.
  bool update(const KdLevelColorMapping* mapping, float opacity);

  NxTexture2* getTexture() const { return m_texture.get(); }

  /// The place of a value in the texture: values of one band spread within its texel. 0 without a mapping.
  float toTextureCoordinate(double value) const;

private:
  const KdLevelColorMapping* m_mapping = nullptr;
  NbRefPtr<NxTexture2> m_texture;
  std::size_t m_mappingTimeStamp = static_cast<std::size_t>(-1);
  float m_opacity = 1.f;
  std::vector<unsigned char> m_image;
};
