// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "elements/KdCache.h"

/// Tells a display mesh that the draw style has changed. Made with a null state it records nothing.
class KdAttributeCache final : public KdCache<KdAttributeCache> {
public:
  explicit KdAttributeCache(NxState* state);
};
