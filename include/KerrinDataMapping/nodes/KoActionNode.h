// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>
#include <Nyx/nodes/NxNode.h>

/// Root of the library's nodes: every action that reaches one comes down to `doAction`, apart from searching and
/// writing, which are the toolkit's own.
class KERRIN_DATAMAPPING_API KoActionNode : public NxNode {
  NX_NODE_ABSTRACT_HEADER(KoActionNode);

public:
  KoActionNode(const KoActionNode& other)
      : NxNode(other) {}
  KoActionNode& operator=(const KoActionNode& other) {
    NxNode::operator=(other);
    return *this;
  }

  void GLRender(NxGLRenderAction* action) override;
  void callback(NxCallbackAction* action) override;
  void getBoundingBox(NxGetBoundingBoxAction* action) override;
  void getMatrix(NxGetMatrixAction* action) override;
  void handleEvent(NxHandleEventAction* action) override;
  void pick(NxPickAction* action) override;
  void rayPick(NxRayPickAction* action) override;
  void search(NxSearchAction* action) override;
  void write(NxWriteAction* action) override;
  void getPrimitiveCount(NxGetPrimitiveCountAction* action) override;
  void distribute(NxDistributeAction* action) override;

protected:
  KoActionNode();
  ~KoActionNode() override;
};
