// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiBuffer.h>
#include <KerrinExtractor/KiGeometryI.h>

/// Extracted nodes.
class KERRIN_EXTRACTOR_API KeXGeometryExplicit : public virtual KiGeometryI {
public:
  virtual std::size_t getNumNodes() const = 0;
  /// The positions as float triples; null when there are none in that form.
  virtual const KiBuffer* getVertexBuffer() const = 0;
};
