// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiBuffer.h>
#include <Nyx/buffers/NxCpuBufferObject.h>

#include <cstddef>

/// A buffer of an extracted mesh as the toolkit's buffers are, with elements of type `T`. Nothing is copied: it is good
/// as long as the extractor's buffer is.
template <class T>
class KxCpuBuffer final : public NxCpuBufferObject {
public:
  explicit KxCpuBuffer(const KiBuffer& source)
      : m_values(static_cast<const T*>(source.getData())) {
    // The toolkit's buffers have no constant form; nobody writes through this one.
    setBuffer(const_cast<void*>(source.getData()), source.getByteSize());
  }

  const T* getValues() const { return m_values; }
  std::size_t getNum() const { return getSize() / sizeof(T); }

private:
  ~KxCpuBuffer() override = default;

  const T* m_values;
};
