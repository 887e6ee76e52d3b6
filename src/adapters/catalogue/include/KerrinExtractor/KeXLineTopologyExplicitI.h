// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXTopologyExplicitI.h>
#include <KerrinExtractor/KiLineTopologyExplicitI.h>

/// Extracted line cells.
class KERRIN_EXTRACTOR_API KeXLineTopologyExplicitI : public virtual KiLineTopologyExplicitI,
                                                      public virtual KeXTopologyExplicitI {};
