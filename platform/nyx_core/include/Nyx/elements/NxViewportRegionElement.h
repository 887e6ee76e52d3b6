// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbViewportRegion.h>
#include <Nyx/elements/NxValueElement.h>

/// The window and the rectangle in it that the action works for.
class NYX_CORE_API NxViewportRegionElement : public NxValueElement<NxViewportRegionElement, NbViewportRegion> {
  NX_ELEMENT_HEADER(NxViewportRegionElement);
};
