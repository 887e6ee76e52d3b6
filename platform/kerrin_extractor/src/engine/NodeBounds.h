// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Box.h"
#include "PointView.h"
#include "Run.h"

namespace kx {

/// A box around `count` nodes from `begin` on, in one phase; nodes whose position is not finite are left out.
Box findBounds(Run& run, const PointView& points, std::size_t begin, std::size_t count);

} // namespace kx
