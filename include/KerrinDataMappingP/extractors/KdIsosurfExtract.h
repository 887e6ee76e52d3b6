// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extraction/KdExtract.h"
#include "extraction/KdMeshKind.h"
#include "extraction/KdMeshSurfaceRepresentation.h"
#include "extraction/KdSetLookup.h"

#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <Nyx/base/NxDebugError.h>

#include <cassert>

/// The extractor of structured kinds; the two kinds with explicit cells have one of their own.
template <MeshType type>
struct KdIsosurfExtractor {
  using Type = KiIsosurfExtractIjk;
  static constexpr const char* LABEL = "KiIsosurfExtractIjk";
};
template <>
struct KdIsosurfExtractor<VOLUME_UNSTRUCTURED> {
  using Type = KiIsosurfExtractUnstructured;
  static constexpr const char* LABEL = "KiIsosurfExtractUnstructured";
};
template <>
struct KdIsosurfExtractor<VOLUME_HEXAHEDRON_IJK> {
  using Type = KiIsosurfExtractHexahedronIjk;
  static constexpr const char* LABEL = "KiIsosurfExtractHexahedronIjk";
};

/// What the isosurface of a mesh type is made with.
template <MeshType type>
struct KdIsosurfTraits : KdMeshKind<type> {
  using Extractor = typename KdIsosurfExtractor<type>::Type;
  using Output = KeXSurfaceMeshUnstructured;
  static constexpr const char* LABEL = KdIsosurfExtractor<type>::LABEL;
  static constexpr MeshType MESH_TYPE = type;
};

/// Finds the set that is cut and calls the extractor.
template <MeshType type>
class KdIsosurfExtract : public KdExtract<KdIsosurfTraits<type>> {
  using Traits = KdIsosurfTraits<type>;
  using Base = KdExtract<Traits>;

public:
  KdIsosurfExtract(const KoMeshRepresentation& node, const typename Base::Mesh& mesh, KiTessellator* tessellator)
      : Base(node, mesh, tessellator)
      , m_node(static_cast<const KoMeshIsosurface&>(node)) {
    assert(node.isOfType(KoMeshIsosurface::getClassTypeId()));
  }

  /// The new output; null, with a warning, when the state holds no set that suits.
  const typename Base::Output* extract(NxState* state, const typename Base::CellFilter* filter) {
    const typename Base::Output* output = nullptr;
    const KiTypedDataSet<double>* set = nullptr;
    if (!findIsoSet(state, set)) return this->setOutput(nullptr);
    if (set && set->getBinding() == DataBinding::PER_CELL)
      output = cut(dynamic_cast<const typename Traits::template CellSet<double>*>(set), filter);
    else if (set && set->getBinding() == DataBinding::PER_NODE)
      output = cut(dynamic_cast<const typename Traits::template NodeSet<double>*>(set), filter);
    if (!output)
      NxDebugError::postWarning("KoMeshIsosurface", "Cannot find a compatible scalartset node in the scene graph or "
                                                    "isoScalarSetId field is invalid.");
    return this->setOutput(output);
  }

private:
  /// False when generic sets stand in the state and the index misses them: the other lists are hidden then, and nothing
  /// is said. A set of hexahedron cells in the Ijk list is not looked for: only a generic node can give one.
  bool findIsoSet(NxState* state, const KiTypedDataSet<double>*& set) const {
    const int index = m_node.isoScalarSetId.getValue();
    set = kx::typedScalarSet(state, index);
    if (set) return true;
    if (kx::hasTypedScalarSets(state)) return false;
    set = kx::scalarSetInForm<typename Traits::template NodeSet<double>>(state, index);
    return true;
  }

  template <class Set>
  const typename Base::Output* cut(const Set* set, const typename Base::CellFilter* filter) {
    return set ? &this->getExtractor().extract(static_cast<double>(m_node.isovalue.getValue()), *set, filter) : nullptr;
  }

  const KoMeshIsosurface& m_node;
};

/// The driver of `KoMeshIsosurface` on one mesh type.
template <MeshType type>
class KdMeshIsosurface final : public KdMeshSurfaceRepresentation<KdIsosurfExtract<type>> {
public:
  explicit KdMeshIsosurface(KoMeshIsosurface& node)
      : KdMeshSurfaceRepresentation<KdIsosurfExtract<type>>(node, "KoMeshIsosurface") {}
};
