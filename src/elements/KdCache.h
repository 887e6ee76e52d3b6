// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/caches/NxCache.h>
#include <Nyx/misc/NxState.h>

/// Base of the caches that hold no content but record an element of the state, so that one can ask later whether the
/// state still holds what it held. `Derived` gives each of them a base of its own.
template <class Derived>
class KdCache : public NxCache {
protected:
  explicit KdCache(NxState* state)
      : NxCache(state) {}

  /// Records the state's element of this class.
  template <class Element>
  void record(NxState* state) {
    constexpr int recordInOpenCaches = 1;
    if (const NxElement* element =
            state->getConstElement(Element::getClassTypeId(), Element::getClassStackIndex(), recordInOpenCaches))
      addElement(element);
  }
};
