// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/details/NxDetail.h>
#include <Nyx/details/NxPointDetail.h>

/// A segment of a polyline of a picked shape.
class NYX_CORE_API NxLineDetail : public NxDetail {
  NX_DETAIL_HEADER(NxLineDetail);

public:
  ~NxLineDetail() override;
  NxDetail* copy() const override;

  /// Which segment of the shape, 0 being the first.
  int getLineIndex() const { return m_lineIndex; }
  void setLineIndex(int index) { m_lineIndex = index; }
  /// Which polyline of the shape the segment belongs to.
  int getPartIndex() const { return m_partIndex; }
  void setPartIndex(int index) { m_partIndex = index; }

  /// The ends of the segment.
  const NxPointDetail& getPoint0() const { return m_point0; }
  const NxPointDetail& getPoint1() const { return m_point1; }
  void setPoint0(const NxPointDetail& point) { m_point0 = point; }
  void setPoint1(const NxPointDetail& point) { m_point1 = point; }

private:
  int m_lineIndex = 0;
  int m_partIndex = 0;
  NxPointDetail m_point0;
  NxPointDetail m_point1;
};
