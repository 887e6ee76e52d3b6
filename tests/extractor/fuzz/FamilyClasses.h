// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Kinds.h"

#include <KerrinExtractor/KiCellExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCellExtractIj.h>
#include <KerrinExtractor/KiCellExtractIjk.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinExtractor/KiCylinderSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiLineCellExtractI.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiOutlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiOutlineExtractIj.h>
#include <KerrinExtractor/KiOutlineExtractIjk.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPointProbeHexahedronIjk.h>
#include <KerrinExtractor/KiPointProbeIj.h>
#include <KerrinExtractor/KiPointProbeIjk.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>
#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinExtractor/KiTessellatedSurfaceExtract.h>
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>

#include <memory>
#include <type_traits>

/// Which class of a family serves which form of mesh.
namespace fuzz {

// Of volumes.
template <class F>
using Isosurf = ClassOf<F, KiIsosurfExtractUnstructured, KiIsosurfExtractHexahedronIjk, KiIsosurfExtractIjk>;
template <class F>
using PlaneSlice =
    ClassOf<F, KiPlaneSliceExtractUnstructured, KiPlaneSliceExtractHexahedronIjk, KiPlaneSliceExtractIjk>;
template <class F>
using SphereSlice =
    ClassOf<F, KiSphereSliceExtractUnstructured, KiSphereSliceExtractHexahedronIjk, KiSphereSliceExtractIjk>;
template <class F>
using CylinderSlice =
    ClassOf<F, KiCylinderSliceExtractUnstructured, KiCylinderSliceExtractHexahedronIjk, KiCylinderSliceExtractIjk>;
template <class F>
using GridPlaneSlice =
    ClassOf<F, KiGridPlaneSliceExtractUnstructured, KiGridPlaneSliceExtractHexahedronIjk, KiGridPlaneSliceExtractIjk>;
template <class F>
using FenceSlice =
    ClassOf<F, KiFenceSliceExtractUnstructured, KiFenceSliceExtractHexahedronIjk, KiFenceSliceExtractIjk>;
template <class F>
using Skin = ClassOf<F, KiSkinExtractUnstructured, KiSkinExtractHexahedronIjk, KiSkinExtractIjk>;
template <class F>
using VolumeOutline = ClassOf<F, KiOutlineExtractUnstructured, KiOutlineExtractHexahedronIjk, KiOutlineExtractIjk>;
template <class F>
using VolumeCells = ClassOf<F, KiCellExtractUnstructured, KiCellExtractHexahedronIjk, KiCellExtractIjk>;
template <class F>
using Streamlines =
    ClassOf<F, KiStreamlineExtractUnstructured, KiStreamlineExtractHexahedronIjk, KiStreamlineExtractIjk>;
template <class F>
using VolumeProbe = ClassOf<F, KiPointProbeUnstructured, KiPointProbeHexahedronIjk, KiPointProbeIjk>;

// Of surfaces.
template <class F>
using SurfaceExtract = ClassOf<F, KiSurfaceExtractUnstructured, KiSurfaceExtractIj>;
template <class F>
using Isolines = ClassOf<F, KiIsolineExtractUnstructured, KiIsolineExtractIj>;
template <class F>
using ClipLines = ClassOf<F, KiClipLineExtractUnstructured, KiClipLineExtractIj>;
template <class F>
using SurfaceOutline = ClassOf<F, KiOutlineExtractUnstructured, KiOutlineExtractIj>;
template <class F>
using SurfaceCells = ClassOf<F, KiCellExtractUnstructured, KiCellExtractIj>;
template <class F>
using SurfaceProbe = ClassOf<F, KiPointProbeUnstructured, KiPointProbeIj>;

// Of lines, where those with explicit cells have classes of their own.
template <class K>
inline constexpr bool IS_EXPLICIT_LINE = std::is_same_v<K, LineUnstructured>;
template <class K>
using LineCells = std::conditional_t<IS_EXPLICIT_LINE<K>, KiLineCellExtractUnstructured, KiLineCellExtractI>;
template <class K>
using Lines = std::conditional_t<IS_EXPLICIT_LINE<K>, KiTessellatedLineExtract, KiLineExtract>;

/// Whether a family serves a kind of mesh: those of no use on corner-point grids do not take them.
template <class Extractor, class K>
inline constexpr bool SERVES = requires(const typename K::Mesh& mesh) {
  Extractor::getNewInstance(mesh, false);
}
|| requires(const typename K::Mesh& mesh) { Extractor::getNewInstance(mesh, false, nullptr); };

/// A new extractor, whatever the family's factory takes.
template <class Extractor, class Mesh>
std::unique_ptr<Extractor> makeExtractor(const Mesh& mesh, bool isParallel, KiTessellator* tessellator) {
  if constexpr (std::is_same_v<Extractor, KxElevatedSurfaceExtractUnstructured>)
    return std::make_unique<Extractor>(mesh, isParallel);
  else if constexpr (requires { Extractor::getNewInstance(mesh, isParallel, tessellator); })
    return std::unique_ptr<Extractor>(Extractor::getNewInstance(mesh, isParallel, tessellator));
  else
    return std::unique_ptr<Extractor>(Extractor::getNewInstance(mesh, isParallel));
}

} // namespace fuzz
