// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXTopologyI.h>
#include <KerrinExtractor/KiBuffer.h>
#include <KerrinExtractor/KiTopologyExplicitI.h>

/// Extracted cells with their nodes.
class KERRIN_EXTRACTOR_API KeXTopologyExplicitI : public virtual KiTopologyExplicitI, public virtual KeXTopologyI {
public:
  /// All cells as one list of 32-bit node indices, a -1 behind each cell; null when the topology cannot offer one.
  virtual const KiBuffer* getIndexBuffer() const = 0;
};
