// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/details/NxDetail.h>
#include <Nyx/details/NxPointDetail.h>

#include <vector>

/// A face of a picked shape.
class NYX_CORE_API NxFaceDetail : public NxDetail {
  NX_DETAIL_HEADER(NxFaceDetail);

public:
  ~NxFaceDetail() override;
  NxDetail* copy() const override;

  /// Which face of the shape, 0 being the first.
  int getFaceIndex() const { return m_faceIndex; }
  void setFaceIndex(int index) { m_faceIndex = index; }
  /// Which part of the shape the face belongs to; 0 where the shape has one part.
  int getPartIndex() const { return m_partIndex; }
  void setPartIndex(int index) { m_partIndex = index; }

  /// The corners of the face.
  int getNumPoints() const { return static_cast<int>(m_points.size()); }
  const NxPointDetail& getPoint(int index) const { return m_points[static_cast<size_t>(index)]; }
  void setPoints(std::vector<NxPointDetail> points) { m_points = std::move(points); }

private:
  int m_faceIndex = 0;
  int m_partIndex = 0;
  std::vector<NxPointDetail> m_points;
};
