// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoMeshLineRepresentation.h>

NX_NODE_ABSTRACT_SOURCE(KoMeshLineRepresentation, KoMeshRepresentation)

KoMeshLineRepresentation::KoMeshLineRepresentation() { NX_NODE_CONSTRUCTOR(KoMeshLineRepresentation); }

KoMeshLineRepresentation::~KoMeshLineRepresentation() = default;
