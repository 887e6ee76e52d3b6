// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineCell.h>

/// A cell of an extracted line mesh.
class KERRIN_EXTRACTOR_API KeXLineCell : public virtual KiLineCell {};
