// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoReplacedElement.h>
#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <Nyx/base/NbColor.h>

/// The colouring of a `KoMaterialElement`; starts with what `getDefault` tells.
struct KoMaterialElementValue {
  KoMaterial::ColoringType faceColoring = KoMaterial::CONTOURING;
  NbColor faceColor{1.f, 1.f, 1.f};
  KoMaterial::ColoringType lineColoring = KoMaterial::CONTOURING;
  NbColor lineColor{1.f, 0.f, 0.f};
  KoMaterial::ColoringType markerColoring = KoMaterial::CONTOURING;
  NbColor markerColor{0.f, 1.f, 0.f};
  float transparency = 0.f;
  bool enhancedColoring = false;
  bool isSet = false;

  bool matches(const KoMaterialElementValue& o) const {
    return isSet == o.isSet && faceColoring == o.faceColoring && faceColor == o.faceColor &&
           lineColoring == o.lineColoring && lineColor == o.lineColor && markerColoring == o.markerColoring &&
           markerColor == o.markerColor && transparency == o.transparency && enhancedColoring == o.enhancedColoring;
  }
};

/// How faces, lines and points of meshes are coloured. An element that no node has set reads like none.
class KERRIN_DATAMAPPING_API KoMaterialElement : public KoReplacedElement<KoMaterialElement, KoMaterialElementValue> {
  NX_ELEMENT_HEADER(KoMaterialElement);

public:
  using ColoringType = KoMaterial::ColoringType;

  static void set(NxState* state, NxNode* node, ColoringType faceColoring, const NbColor& faceColor,
                  ColoringType lineColoring, const NbColor& lineColor, ColoringType markerColoring,
                  const NbColor& markerColor, float transparency, bool enhancedColoring);
  /// All values, and whether a node has set them; the defaults where none has.
  static bool getMaterial(NxState* state, ColoringType& faceColoring, NbColor& faceColor, ColoringType& lineColoring,
                          NbColor& lineColor, ColoringType& markerColoring, NbColor& markerColor, float& transparency,
                          bool& enhancedColoring);
  static bool getColoringTypes(NxState* state, ColoringType& face, ColoringType& line, ColoringType& marker);
  static bool getEnhancedColoring(NxState* state);
  /// Contouring in all styles with white faces, red lines and green points, opaque; returns false.
  static bool getDefault(ColoringType& faceColoring, NbColor& faceColor, ColoringType& lineColoring, NbColor& lineColor,
                         ColoringType& markerColoring, NbColor& markerColor, float& transparency,
                         bool& enhancedColoring);

  void print(FILE* file) const override;
};
