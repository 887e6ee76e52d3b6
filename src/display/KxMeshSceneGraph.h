// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KxLevelTexture.h"
#include "display/KxStyledShapeGraph.h"

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <Nyx/base/NbColorRGBA.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/base/NbVec2f.h>

#include <cstdint>
#include <memory>
#include <vector>

class KeXGeometryExplicit;
class NxBBox;
class NxRayPickAction;
class NxSeparator;
class NxState;

/// The fixed graph of shapes that draws one display mesh: its vertices as faces, edges and points, each with a switch
/// and a colouring of its own.
///
/// The graph is built once; afterwards only field values, switches and buffer pointers change. The toolkit's shapes
/// read the arrays where they lie.
class KxMeshSceneGraph {
public:
  using ExtractedSets = std::vector<const KeXDataSetI<double>*>;
  using SingleMapping = KiColorMapping<double, NbColorRGBA>;
  using CombineMapping = KiColorMapping<std::vector<double>, NbColorRGBA>;

  virtual ~KxMeshSceneGraph();
  KxMeshSceneGraph(const KxMeshSceneGraph&) = delete;
  KxMeshSceneGraph& operator=(const KxMeshSceneGraph&) = delete;

  /// Shows and hides the styles as the state says; returns whether anything is displayed. Without a `KoDrawStyle`
  /// above, the primary style follows the application's own draw style.
  virtual bool updateDrawStyle(NxState* state);
  virtual void clear();
  /// Replaces the details of picked points that lie on this graph.
  virtual void fillPickedPoints(NxRayPickAction* action, const KoMeshRepresentationDetail* detail);

  /// Takes the state's material over; returns whether the display must change. `mapping` may be null.
  bool updateMaterial(NxState* state, const SingleMapping* mapping);
  /// Takes the positions by pointer and the box around them.
  void fillVertices(const KeXGeometryExplicit& geometry);
  /// Fills colours or texture coordinates from the sets; the first one counts for a single mapping. An empty list and a
  /// null entry mean that there is no colouring by data.
  void fillColors(NxState* state, const ExtractedSets& colorSets);

protected:
  explicit KxMeshSceneGraph(NxGroup& parent);

  /// The general form of `updateDrawStyle`.
  bool showStyles(NxState* state);

  NxSeparator& mainStyle() const { return *m_mainStyle; }
  NxSwitch& extraStyles() const { return *m_extraStyles; }
  bool isEnhancedColoring() const { return m_enhancedColoring; }
  /// Runs behind the first look at the material in `updateMaterial`; returns whether something has changed.
  virtual bool updateOutline(NxState* state);

  /// Made by the derived classes; the primary one is shown even without a `KoDrawStyle` in the state.
  std::unique_ptr<KxStyledShapeGraph> m_faceGraph;
  std::unique_ptr<KxStyledShapeGraph> m_lineGraph;
  std::unique_ptr<KxStyledShapeGraph> m_pointGraph;
  KxStyledShapeGraph* m_primaryGraph = nullptr;

private:
  void fillTextureCoordinates(const KeXDataSetI<double>& set);
  void fillPackedColors(const SingleMapping& mapping, const KeXDataSetI<double>& set);
  void fillPackedColors(const CombineMapping& mapping, const ExtractedSets& sets);
  std::uint32_t packed(NbColorRGBA color) const;

  NbRefPtr<NxBBox> m_boundingBox;
  NbRefPtr<NxSeparator> m_mainStyle;
  NbRefPtr<NxSwitch> m_extraStyles;
  bool m_styleIsSet = false;
  float m_opacity = 1.f;
  bool m_enhancedColoring = false;
  std::vector<std::uint32_t> m_colors;
  std::vector<NbVec2f> m_textureCoordinates;
  std::unique_ptr<KxLevelTexture> m_levelTexture;
};
