// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>

/// Base of the representations whose result is a set of lines.
class KERRIN_DATAMAPPING_API KoMeshLineRepresentation : public KoMeshRepresentation {
  NX_NODE_ABSTRACT_HEADER(KoMeshLineRepresentation);

protected:
  KoMeshLineRepresentation();
  ~KoMeshLineRepresentation() override;
};
