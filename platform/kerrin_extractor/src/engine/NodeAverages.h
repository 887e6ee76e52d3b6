// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "MeshView.h"
#include "Run.h"
#include "ValueView.h"

namespace kx {

/// Fills `averages` by the mean of the values of the live, accepted cells around each node; NaN where there is none.
/// The sums of a node run in the order of its cells, whatever the number of threads. Beside `averages` it needs four
/// bytes for the nodes that are at work.
void averageToNodes(Run& run, const MeshView& mesh, const SetView<double>& cellValues, Array<double>& averages);

} // namespace kx
