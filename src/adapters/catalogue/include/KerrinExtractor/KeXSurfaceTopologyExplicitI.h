// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXTopologyExplicitI.h>
#include <KerrinExtractor/KiSurfaceTopologyExplicitI.h>

/// Extracted surface cells.
class KERRIN_EXTRACTOR_API KeXSurfaceTopologyExplicitI : public virtual KiSurfaceTopologyExplicitI,
                                                         public virtual KeXTopologyExplicitI {};
