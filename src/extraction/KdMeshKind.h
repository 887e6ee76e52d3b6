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

/// A form of addressing: the cell filter and the sets that have it, and the state elements that hold such sets.
struct KdFlatForm {
  using CellFilter = KiCellFilterI;
  template <class T>
  using Set = KiDataSetI<T>;
  using ScalarElement = KoScalarSetElementI;
  using Vec3Element = KoVec3SetElementI;
};
struct KdStructuredForm {
  using CellFilter = KiCellFilterIjk;
  template <class T>
  using Set = KiDataSetIjk<T>;
  using ScalarElement = KoScalarSetElementIjk;
  using Vec3Element = KoVec3SetElementIjk;
};

/// In which forms a mesh kind takes what belongs to its nodes and to its cells.
template <class NodeForm, class CellForm>
struct KdForms {
  using CellFilter = typename CellForm::CellFilter;
  template <class T>
  using NodeSet = typename NodeForm::template Set<T>;
  template <class T>
  using CellSet = typename CellForm::template Set<T>;
  using NodeScalarElement = typename NodeForm::ScalarElement;
  using CellScalarElement = typename CellForm::ScalarElement;
  using NodeVec3Element = typename NodeForm::Vec3Element;
  using CellVec3Element = typename CellForm::Vec3Element;
};
using KdFormsI = KdForms<KdFlatForm, KdFlatForm>;
using KdFormsHexahedronIjk = KdForms<KdFlatForm, KdStructuredForm>;
using KdFormsIjk = KdForms<KdStructuredForm, KdStructuredForm>;

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
