// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/details/NxDetail.h>

/// A vertex of a picked shape, by its indices among the coordinates, materials, normals and texture coordinates; -1
/// for none.
class NYX_CORE_API NxPointDetail : public NxDetail {
  NX_DETAIL_HEADER(NxPointDetail);

public:
  ~NxPointDetail() override;
  NxDetail* copy() const override;

  int getCoordinateIndex() const { return m_coordinate; }
  int getMaterialIndex() const { return m_material; }
  int getNormalIndex() const { return m_normal; }
  int getTextureCoordIndex() const { return m_textureCoord; }
  void setCoordinateIndex(int index) { m_coordinate = index; }
  void setMaterialIndex(int index) { m_material = index; }
  void setNormalIndex(int index) { m_normal = index; }
  void setTextureCoordIndex(int index) { m_textureCoord = index; }

private:
  int m_coordinate = -1;
  int m_material = -1;
  int m_normal = -1;
  int m_textureCoord = -1;
};
