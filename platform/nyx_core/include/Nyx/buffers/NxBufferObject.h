// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxRefCounter.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstddef>

/// A block of bytes, wherever it lies. Reference counted.
class NYX_CORE_API NxBufferObject : public NxRefCounter {
public:
  enum AccessMode { READ_ONLY, READ_WRITE };

  /// The number of bytes.
  virtual size_t getSize() const = 0;
  /// Makes the bytes accessible until unmap(); null for an empty buffer.
  virtual void* map(AccessMode mode) = 0;
  virtual void unmap() = 0;

protected:
  ~NxBufferObject() override;
};
