// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>

/// Read access to a block of memory that an extracted mesh owns: indices or vertices, in the form that shapes take by
/// pointer. It lives as long as the mesh and changes only when the extractor runs again.
class KERRIN_EXTRACTOR_API KiBuffer {
public:
  virtual ~KiBuffer();
  virtual const void* getData() const = 0;
  virtual std::size_t getByteSize() const = 0;

protected:
  KiBuffer() = default;
  KiBuffer(const KiBuffer&) = default;
  KiBuffer& operator=(const KiBuffer&) = default;
};
