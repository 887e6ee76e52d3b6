// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "colors/KdThreshold.h"

#include <KerrinDataMapping/nodes/KoTabulatedColorMapping.h>

namespace kx {

inline NbColorRGBA toColor(const NbVec4f& v) { return {v[0], v[1], v[2], v[3]}; }

/// Hands the threshold fields of a node to its working object.
template <class Working>
void setThresholds(Working& working, const KoTabulatedColorMapping& node) {
  working.setMinThreshold({node.minThresholdEnable.getValue(), static_cast<double>(node.minThresholdValue.getValue()),
                           toColor(node.minThresholdColor.getValue())});
  working.setMaxThreshold({node.maxThresholdEnable.getValue(), static_cast<double>(node.maxThresholdValue.getValue()),
                           toColor(node.maxThresholdColor.getValue())});
}

} // namespace kx
