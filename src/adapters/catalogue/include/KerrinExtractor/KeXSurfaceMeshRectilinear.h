// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>

/// An extracted rectilinear surface mesh.
class KERRIN_EXTRACTOR_API KeXSurfaceMeshRectilinear : public KiSurfaceMeshRectilinear {};
