// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxLevelTexture.h"

#include "colors/KdLevelColorMapping.h"

#include <Nyx/base/NbVec2i32.h>

#include <algorithm>

namespace {

unsigned char toByte(float component) { return static_cast<unsigned char>(std::clamp(component, 0.f, 1.f) * 255.f); }

} // namespace

bool KxLevelTexture::update(const KdLevelColorMapping* mapping, float opacity) {
  if (!mapping) {
    const bool hadMapping = m_mapping != nullptr;
    m_mapping = nullptr;
    m_texture = nullptr;
    return hadMapping;
  }
  if (mapping == m_mapping && mapping->getTimeStamp() == m_mappingTimeStamp && opacity == m_opacity) return false;
  m_mapping = mapping;
  m_mappingTimeStamp = mapping->getTimeStamp();
  m_opacity = opacity;

  const std::size_t numBands = mapping->getNumColors();
  m_image.clear();
  for (std::size_t band = 0; band < numBands; ++band) {
    const NbColorRGBA& color = mapping->getLevelColor(band);
    m_image.insert(m_image.end(), {toByte(color[0]), toByte(color[1]), toByte(color[2]), toByte(opacity * color[3])});
  }
  m_texture = new NxTexture2;
  m_texture->image.setValue(NbVec2i32(static_cast<int>(numBands), 1), 4, m_image.data());
  m_texture->minFilter = NxTexture2::NEAREST;
  m_texture->magFilter = NxTexture2::NEAREST;
  m_texture->wrapS = NxTexture2::CLAMP;
  return true;
}

float KxLevelTexture::toTextureCoordinate(double value) const {
  if (!m_mapping || m_mapping->getNumColors() == 0) return 0.f;
  const std::size_t band = m_mapping->bandIndex(value);
  const double low = m_mapping->getLevel(band);
  const double fraction = (value - low) / (m_mapping->getLevel(band + 1) - low);
  return static_cast<float>((static_cast<double>(band) + fraction) / static_cast<double>(m_mapping->getNumColors()));
}
