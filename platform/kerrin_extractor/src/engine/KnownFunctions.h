// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CylinderFunction.h"
#include "PlaneFunction.h"
#include "SphereFunction.h"

namespace kx {

/// Calls `visit` with a function as what it is, so that the loops inside call nothing.
template <class Visit>
void withFunction(const ImplicitFunction& function, Visit&& visit) {
  if (const auto* plane = dynamic_cast<const PlaneFunction*>(&function))
    visit(*plane);
  else if (const auto* sphere = dynamic_cast<const SphereFunction*>(&function))
    visit(*sphere);
  else if (const auto* cylinder = dynamic_cast<const CylinderFunction*>(&function))
    visit(*cylinder);
  else
    visit(function);
}

} // namespace kx
