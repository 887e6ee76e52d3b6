// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoScalarSetElementI.h>
#include <KerrinDataMapping/elements/KoScalarSetElementIjk.h>
#include <KerrinDataMapping/elements/KoVec3SetElementI.h>
#include <KerrinDataMapping/elements/KoVec3SetElementIjk.h>
#include <KerrinDataMapping/elements/MeshType.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

/// In which form a mesh kind takes its cell filter and its sets, and the state elements that hold sets of that form.
struct KdFormsI {
  using CellFilter = KiCellFilterI;
  template <class T>
  using NodeSet = KiDataSetI<T>;
  template <class T>
  using CellSet = KiDataSetI<T>;
  using NodeScalarElement = KoScalarSetElementI;
  using CellScalarElement = KoScalarSetElementI;
  using NodeVec3Element = KoVec3SetElementI;
  using CellVec3Element = KoVec3SetElementI;
};

/// Nodes have one flat index, cells three.
struct KdFormsHexahedronIjk {
  using CellFilter = KiCellFilterIjk;
  template <class T>
  using NodeSet = KiDataSetI<T>;
  template <class T>
  using CellSet = KiDataSetIjk<T>;
  using NodeScalarElement = KoScalarSetElementI;
  using CellScalarElement = KoScalarSetElementIjk;
  using NodeVec3Element = KoVec3SetElementI;
  using CellVec3Element = KoVec3SetElementIjk;
};

struct KdFormsIjk {
  using CellFilter = KiCellFilterIjk;
  template <class T>
  using NodeSet = KiDataSetIjk<T>;
  template <class T>
  using CellSet = KiDataSetIjk<T>;
  using NodeScalarElement = KoScalarSetElementIjk;
  using CellScalarElement = KoScalarSetElementIjk;
  using NodeVec3Element = KoVec3SetElementIjk;
  using CellVec3Element = KoVec3SetElementIjk;
};

template <class MeshInterface, class Forms>
struct KdMeshKindOf : Forms {
  using Mesh = MeshInterface;
};

/// What holds for a mesh type whatever is extracted from it; the traits of each family build on it.
template <MeshType type>
struct KdMeshKind;

template <>
struct KdMeshKind<VOLUME_UNSTRUCTURED> : KdMeshKindOf<KiVolumeMeshUnstructured, KdFormsI> {};
template <>
struct KdMeshKind<VOLUME_HEXAHEDRON_IJK> : KdMeshKindOf<KiVolumeMeshHexahedronIjk, KdFormsHexahedronIjk> {};
template <>
struct KdMeshKind<VOLUME_VERTEX_HEXAHEDRON_IJK> : KdMeshKindOf<KiVolumeMeshVertexHexahedronIjk, KdFormsIjk> {};
template <>
struct KdMeshKind<VOLUME_REGULAR> : KdMeshKindOf<KiVolumeMeshRegular, KdFormsIjk> {};
template <>
struct KdMeshKind<VOLUME_RECTILINEAR> : KdMeshKindOf<KiVolumeMeshRectilinear, KdFormsIjk> {};
template <>
struct KdMeshKind<VOLUME_CURVILINEAR> : KdMeshKindOf<KiVolumeMeshCurvilinear, KdFormsIjk> {};
