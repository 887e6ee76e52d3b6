// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>

/// An extracted regular surface mesh.
class KERRIN_EXTRACTOR_API KeXSurfaceMeshRegular : public KiSurfaceMeshRegular {};
