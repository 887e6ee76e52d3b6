// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoScalarSetI.h>
#include <KerrinDataMapping/nodes/KoScalarSetIj.h>
#include <KerrinDataMapping/nodes/KoScalarSetIjk.h>
#include <KerrinDataMapping/nodes/KoVec3SetI.h>
#include <KerrinDataMapping/nodes/KoVec3SetIj.h>
#include <KerrinDataMapping/nodes/KoVec3SetIjk.h>

// The six nodes differ in nothing but the form of their set.

NX_NODE_SOURCE(KoScalarSetI, KoActionNode)
KoScalarSetI::KoScalarSetI() { NX_NODE_CONSTRUCTOR(KoScalarSetI); }
KoScalarSetI::~KoScalarSetI() = default;

NX_NODE_SOURCE(KoScalarSetIj, KoActionNode)
KoScalarSetIj::KoScalarSetIj() { NX_NODE_CONSTRUCTOR(KoScalarSetIj); }
KoScalarSetIj::~KoScalarSetIj() = default;

NX_NODE_SOURCE(KoScalarSetIjk, KoActionNode)
KoScalarSetIjk::KoScalarSetIjk() { NX_NODE_CONSTRUCTOR(KoScalarSetIjk); }
KoScalarSetIjk::~KoScalarSetIjk() = default;

NX_NODE_SOURCE(KoVec3SetI, KoActionNode)
KoVec3SetI::KoVec3SetI() { NX_NODE_CONSTRUCTOR(KoVec3SetI); }
KoVec3SetI::~KoVec3SetI() = default;

NX_NODE_SOURCE(KoVec3SetIj, KoActionNode)
KoVec3SetIj::KoVec3SetIj() { NX_NODE_CONSTRUCTOR(KoVec3SetIj); }
KoVec3SetIj::~KoVec3SetIj() = default;

NX_NODE_SOURCE(KoVec3SetIjk, KoActionNode)
KoVec3SetIjk::KoVec3SetIjk() { NX_NODE_CONSTRUCTOR(KoVec3SetIjk); }
KoVec3SetIjk::~KoVec3SetIjk() = default;
