// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KeXSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KeXSurfaceMeshRegular.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>

/// Extractors on surfaces that were extracted themselves, for display.
class KERRIN_EXTRACTOR_API KxSurfaceExtractFactory {
public:
  static KiSurfaceExtractIj* getNewInstance(const KeXSurfaceMeshCurvilinear& mesh, bool parallel);
  static KiSurfaceExtractIj* getNewInstance(const KeXSurfaceMeshRectilinear& mesh, bool parallel);
  static KiSurfaceExtractIj* getNewInstance(const KeXSurfaceMeshRegular& mesh, bool parallel);
  static KiSurfaceExtractIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel);
  static KiSurfaceExtractUnstructured* getNewInstance(const KeXSurfaceMeshUnstructured& mesh, bool parallel,
                                                      KiTessellator* tessellator);
};
