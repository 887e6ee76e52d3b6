// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "adapters/KxCpuBuffer.h"

#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <KerrinExtractor/KbVec3.h>
#include <Nyx/base/NbColor.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/base/NbVec2f.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxMaterial.h>
#include <Nyx/nodes/NxSwitch.h>
#include <Nyx/nodes/NxTexture2.h>
#include <Nyx/nodes/NxVertexProperty.h>

#include <cstdint>
#include <vector>

class KoMeshRepresentationDetail;
class NxDetail;
class NxGroup;
class NxPath;

/// One of the styles in which a display mesh draws its vertices: faces, edges or points.
///
/// It adds to its group a level texture, a draw style, a uniform colour and (in the derived classes) the shape. Styles
/// of one mesh share vertex property and shape, so that the arrays exist once; each has its own switches.
class KxStyledShapeGraph {
public:
  /// The values are those of `NxDrawStyle::style`.
  enum StyleKind { FACES = 0, EDGES = 1, POINTS = 2 };

  /// How values of the vertex property belong to the shape: the values are those of its binding fields.
  enum Binding { OVERALL = 2, PER_FACE = 5, PER_VERTEX_INDEXED = 8 };

  virtual ~KxStyledShapeGraph();
  KxStyledShapeGraph(const KxStyledShapeGraph&) = delete;
  KxStyledShapeGraph& operator=(const KxStyledShapeGraph&) = delete;

  /// Empties the arrays.
  virtual void clear();
  /// Whether a picked path ends in this shape.
  virtual bool isShapeOf(const NxPath* path) const;
  /// What a pick on this shape reports; null when it has nothing to add. Owned by the caller.
  virtual NxDetail* createDetail(const NxDetail* detail, const KoMeshRepresentationDetail* meshDetail) const;
  /// Whether the style is shown and coloured by data.
  virtual bool isContouring() const { return m_isVisible && m_coloring == KoMaterial::CONTOURING; }

  void setVisible(bool visible);
  /// Leaves the choice of the style to the application's own draw style.
  void ignoreStyle();
  bool isVisible() const { return m_isVisible; }

  /// Takes the positions by pointer.
  void setVertices(const KxCpuBuffer<KbVec3<float>>* buffer);
  /// Takes colours or texture coordinates by pointer (at most one of them has entries) and decides whether they or the
  /// uniform colour are seen.
  void setColors(const std::vector<NbVec2f>& textureCoordinates, const std::vector<std::uint32_t>& colors,
                 Binding binding);
  /// Null takes the texture away.
  void setTexture(NxTexture2* texture);
  /// The uniform colour; a transparency of -1 says that there is none and the application's colour stays. Returns
  /// whether nothing has changed; a style that isn't visible is left alone.
  bool setMaterial(KoMaterial::ColoringType coloring, const NbColor& color, float transparency);

protected:
  KxStyledShapeGraph(NxGroup& parent, StyleKind kind, NxVertexProperty* sharedProperty);

  NxVertexProperty& vertexProperty() const { return *m_vertexProperty; }

private:
  NbRefPtr<NxVertexProperty> m_vertexProperty;
  NbRefPtr<NxDrawStyle> m_drawStyle;
  KoMaterial::ColoringType m_coloring = KoMaterial::COLOR;
  NbRefPtr<NxSwitch> m_uniformColorSwitch;
  NbRefPtr<NxMaterial> m_material;
  bool m_isVisible = false;
  NbRefPtr<NxSwitch> m_levelTextureSwitch;
  StyleKind m_styleKind;
};
