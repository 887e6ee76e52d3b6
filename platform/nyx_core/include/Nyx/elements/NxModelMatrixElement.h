// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbMatrix.h>
#include <Nyx/elements/NxValueElement.h>

/// Local to world coordinates. What a node does comes before what stands above it.
class NYX_CORE_API NxModelMatrixElement : public NxValueElement<NxModelMatrixElement, NbMatrix> {
  NX_ELEMENT_HEADER(NxModelMatrixElement);

public:
  /// Lets a matrix act on what comes below, before all that has acted already.
  static void mult(NxState* state, NxNode* node, const NbMatrix& matrix) { set(state, node, matrix * get(state)); }
};
