// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>
#include <KerrinDataMapping/elements/MeshType.h>
#include <KerrinExtractor/KiTypedDataSet.h>
#include <Nyx/details/NxDetail.h>

#include <cstddef>
#include <vector>

class KiMesh;
class KoFaceDetail;
class KoLineDetail;

/// What a representation was extracted from: the application's mesh and colour sets. A pick puts one on the
/// representation node.
class KERRIN_DATAMAPPING_API KoMeshDetail : public NxDetail {
  NX_DETAIL_HEADER(KoMeshDetail);

public:
  using ColorSets = std::vector<const KiTypedDataSet<double>*>;

  KoMeshDetail() = default;
  KoMeshDetail(const KiMesh* mesh, MeshType type)
      : m_meshType(type)
      , m_mesh(mesh) {}

  NxDetail* copy() const override { return new KoMeshDetail(*this); }

  /// Null when not known.
  const KiMesh* getMesh() const { return m_mesh; }
  MeshType getMeshType() const { return m_meshType; }
  const ColorSets& getColorScalarSets() const { return m_colorSets; }
  /// The first of the colour sets, or null.
  const KiTypedDataSet<double>* getColorScalarSet() const {
    return m_colorSets.empty() ? nullptr : m_colorSets.front();
  }
  /// A list of nothing but nulls counts as empty.
  void setColorScalarSets(const ColorSets& sets);

  /// The detail with the cell index of this mesh in the form of its type (I, Ij or Ijk); null for a type without one.
  /// Owned by the caller.
  KoFaceDetail* specilizeFaceDetail(const KoFaceDetail* detail) const;
  KoLineDetail* specilizeLineDetail(const KoLineDetail* detail) const;

  /// Splits a flat cell index of this mesh. On a mesh of another form `i` is the index and the others are -1.
  void computeIj(std::size_t index, std::size_t& i, std::size_t& j) const;
  void computeIjk(std::size_t index, std::size_t& i, std::size_t& j, std::size_t& k) const;

private:
  MeshType m_meshType = UNDEFINED_MESH_TYPE;
  const KiMesh* m_mesh = nullptr;
  ColorSets m_colorSets;
};
