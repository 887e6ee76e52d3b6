// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbViewVolume.h>
#include <Nyx/elements/NxValueElement.h>

/// The camera that was met last.
struct NxViewValue {
  bool isSet = false; ///< false: no camera yet
  NbViewVolume volume;

  friend bool operator==(const NxViewValue& a, const NxViewValue& b) {
    return a.isSet == b.isSet && a.volume.getMatrix() == b.volume.getMatrix();
  }
};

/// The view volume of the camera above.
class NYX_CORE_API NxViewElement : public NxValueElement<NxViewElement, NxViewValue> {
  NX_ELEMENT_HEADER(NxViewElement);
};
