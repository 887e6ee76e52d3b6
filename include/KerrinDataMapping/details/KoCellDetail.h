// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoMeshDetail.h>
#include <Nyx/base/NbVec3f.h>

#include <cstddef>
#include <vector>

/// What details of picked faces and of picked lines have in common. `ToolkitDetail` is what the toolkit reports,
/// `RepresentationDetail` the detail of the extracted mesh.
template <class ToolkitDetail, class RepresentationDetail>
class KoCellDetail : public ToolkitDetail {
public:
  /// Mesh, mesh type and colour sets of the application; empty until the representation has specialised the detail.
  const KoMeshDetail& getMeshDetail() const { return m_meshDetail; }
  /// The extracted mesh; null when not known.
  const RepresentationDetail* getMeshRepresentationDetail() const { return m_representationDetail; }

  /// The value of the first colour set at a point of the picked cell; the greatest double when there is none.
  double getValue(const NbVec3f& point) const;
  /// The values of all colour sets there, see `KoMeshRepresentationDetail::computeValues`.
  std::vector<double> getValues(const NbVec3f& point) const;

protected:
  KoCellDetail() = default;
  /// `pickedIndex` is the toolkit's index of the cell among those drawn. Where the extracted mesh has dead cells, which
  /// are not drawn, `mapping` tells the cell of each drawn one.
  KoCellDetail(const ToolkitDetail* detail, int pickedIndex, const RepresentationDetail* representationDetail,
               const std::vector<std::size_t>* mapping);

  std::size_t getExtractedCellIndex() const { return m_extractedCellIndex; }
  /// The input cell of the picked one: its indices, those that don't apply or aren't known being -1.
  void getInputCell(std::size_t& i, std::size_t& j, std::size_t& k) const;
  void setMeshDetail(const KoMeshDetail& detail) { m_meshDetail = detail; }

private:
  KoMeshDetail m_meshDetail;
  const RepresentationDetail* m_representationDetail = nullptr;
  std::size_t m_extractedCellIndex = 0;
};

/// A cell detail with the flat index of the application's cell. `Detail` is `KoFaceDetail` or `KoLineDetail`.
template <class Detail>
class KoCellDetailI : public Detail {
public:
  std::size_t getCellIndex() const { return m_index; }

protected:
  KoCellDetailI() = default;
  KoCellDetailI(const Detail& detail, const KoMeshDetail& meshDetail);

private:
  std::size_t m_index = 0;
};

/// A cell detail with the indices of the application's cell on a structured surface.
template <class Detail>
class KoCellDetailIj : public Detail {
public:
  std::size_t getCellIndexI() const { return m_i; }
  std::size_t getCellIndexJ() const { return m_j; }

protected:
  KoCellDetailIj() = default;
  KoCellDetailIj(const Detail& detail, const KoMeshDetail& meshDetail);

private:
  std::size_t m_i = 0;
  std::size_t m_j = 0;
};

/// A cell detail with the indices of the application's cell in a structured volume.
template <class Detail>
class KoCellDetailIjk : public Detail {
public:
  std::size_t getCellIndexI() const { return m_i; }
  std::size_t getCellIndexJ() const { return m_j; }
  std::size_t getCellIndexK() const { return m_k; }

protected:
  KoCellDetailIjk() = default;
  KoCellDetailIjk(const Detail& detail, const KoMeshDetail& meshDetail);

private:
  std::size_t m_i = 0;
  std::size_t m_j = 0;
  std::size_t m_k = 0;
};
