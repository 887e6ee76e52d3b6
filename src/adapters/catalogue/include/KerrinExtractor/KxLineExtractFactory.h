// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshCurvilinear.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiTessellator.h>

/// Extractors on lines that were extracted themselves, for display.
class KERRIN_EXTRACTOR_API KxLineExtractFactory {
public:
  static KiLineExtract* getNewInstance(const KeXLineMeshCurvilinear& mesh, bool parallel, KiTessellator* tessellator);
  static KiLineExtract* getNewInstance(const KeXLineMeshUnstructured& mesh, bool parallel, KiTessellator* tessellator);
};
