// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>

/// An extracted curvilinear surface mesh.
class KERRIN_EXTRACTOR_API KeXSurfaceMeshCurvilinear : public KiSurfaceMeshCurvilinear {};
