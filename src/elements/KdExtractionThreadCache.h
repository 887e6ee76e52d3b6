// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "elements/KdCache.h"

/// Tells an extraction that the cell filter has changed. Made with a null state it records nothing.
class KdExtractionThreadCache final : public KdCache<KdExtractionThreadCache> {
public:
  explicit KdExtractionThreadCache(NxState* state);
};
