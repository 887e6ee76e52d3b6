// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxSFImage.h>

#include <Nyx/base/NxDebugError.h>

#include <algorithm>

void NxSFImage::setValue(const NbVec2i32& size, int numComponents, const void* pixels, CopyPolicy policy,
                         NxImageValue::DataType dataType) {
  if (size[0] < 0 || size[1] < 0 || numComponents < 0 || numComponents > 4) {
    NxDebugError::post("NxSFImage::setValue", "No image has %d x %d pixels of %d components.", size[0], size[1],
                       numComponents);
    return;
  }
  NxImageValue image;
  image.size = size;
  image.numComponents = numComponents;
  image.dataType = dataType;
  image.pixels = pixels;
  const size_t numBytes = image.getNumBytes();
  if (numBytes == 0) {
    image.pixels = nullptr;
  } else if (!pixels || policy == COPY) {
    auto bytes = std::make_shared<std::vector<uint8_t>>(numBytes);
    if (pixels) std::copy_n(static_cast<const uint8_t*>(pixels), numBytes, bytes->begin());
    image.pixels = bytes->data();
    image.owned = std::move(bytes);
  }
  setValue(image);
}

const uint8_t* NxSFImage::getValue(NbVec2i32& size, int& numComponents) const {
  size = m_value.size;
  numComponents = m_value.numComponents;
  return static_cast<const uint8_t*>(m_value.pixels);
}
