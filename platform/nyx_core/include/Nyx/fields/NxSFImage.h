// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec2i32.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

#include <cstdint>
#include <memory>
#include <vector>

/// An image: `size` pixels, lower left pixel first, row after row, `numComponents` (1 grey, 2 grey and alpha, 3 RGB,
/// 4 RGBA) values of `dataType` a pixel. The bytes are shared between copies or belong to the user.
struct NxImageValue {
  enum DataType { UNSIGNED_BYTE, FLOAT };

  NbVec2i32 size;
  int numComponents = 0;
  DataType dataType = UNSIGNED_BYTE;
  const void* pixels = nullptr;
  std::shared_ptr<const std::vector<uint8_t>> owned; ///< Holds the pixels; null when they are the user's.

  size_t getNumBytes() const {
    return static_cast<size_t>(size[0]) * static_cast<size_t>(size[1]) * static_cast<size_t>(numComponents) *
           (dataType == FLOAT ? sizeof(float) : 1);
  }
};

extern template class NYX_CORE_API NxSFieldOf<NxImageValue>;

/// A field with one image; empty by default.
class NYX_CORE_API NxSFImage : public NxSFieldOf<NxImageValue> {
  NX_FIELD_HEADER(NxSFImage, NxSFieldOf<NxImageValue>);

public:
  enum CopyPolicy {
    COPY,    ///< The pixels are copied.
    NO_COPY, ///< The user keeps the pixels alive and calls touch() after changing them.
  };

  using NxSFieldOf::setValue;
  /// Sets size, components and pixels. Null pixels give an image of zeros. A negative size, or other than 0 to 4
  /// components, posts an error and leaves the value.
  void setValue(const NbVec2i32& size, int numComponents, const void* pixels, CopyPolicy policy = COPY,
                NxImageValue::DataType dataType = NxImageValue::UNSIGNED_BYTE);
  /// The bytes, row after row from the lower left; size and components are outputs. Null for an empty image.
  const uint8_t* getValue(NbVec2i32& size, int& numComponents) const;
  using NxSFieldOf::getValue;
};
