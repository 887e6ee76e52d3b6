// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbMatrix.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// What all nodes have in common that change the coordinate system of what follows. A child class tells its matrix, the
/// rest is written once.
class NYX_CORE_API NxTransformation : public NxPropertyNode {
  NX_NODE_ABSTRACT_HEADER(NxTransformation);

public:
  /// Local coordinates below the node to those above it.
  virtual NbMatrix getMatrixValue() const = 0;

  void doAction(NxAction* action) override;
  void getMatrix(NxGetMatrixAction* action) override;

protected:
  NxTransformation();
  ~NxTransformation() override;
};
