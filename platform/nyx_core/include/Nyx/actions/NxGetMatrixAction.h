// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NbMatrix.h>

/// Computes the matrix from the coordinates at the end of a path to those at its root. Applied to a node, it gives
/// that node's own matrix.
class NYX_CORE_API NxGetMatrixAction : public NxAction {
  NX_ACTION_HEADER(NxGetMatrixAction);

public:
  NxGetMatrixAction();
  ~NxGetMatrixAction() override;

  /// The result: a point at the end of the path times this matrix is that point at the root.
  const NbMatrix& getMatrix() const { return m_matrix; }
  NbMatrix getInverse() const { return m_matrix.inverse(); }

  /// Lets a matrix act before all others so far. For transformation nodes.
  void multLeft(const NbMatrix& matrix) { m_matrix.multLeft(matrix); }
  void setMatrix(const NbMatrix& matrix) { m_matrix = matrix; }

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  NbMatrix m_matrix;
};
