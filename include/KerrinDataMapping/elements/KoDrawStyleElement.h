// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoReplacedElement.h>

class KoDrawStyle;

/// The styles of a `KoDrawStyleElement`; starts with what `getDefault` tells.
struct KoDrawStyleElementValue {
  bool displaySolid = true;
  bool displayEdges = false;
  bool displayPoints = false;
  float fadingThreshold = 0.f;
  bool isSet = false;

  bool matches(const KoDrawStyleElementValue& o) const {
    return isSet == o.isSet && displaySolid == o.displaySolid && displayEdges == o.displayEdges &&
           displayPoints == o.displayPoints && fadingThreshold == o.fadingThreshold;
  }
};

/// The styles in which meshes are displayed. An element that no node has set reads like none.
class KERRIN_DATAMAPPING_API KoDrawStyleElement
    : public KoReplacedElement<KoDrawStyleElement, KoDrawStyleElementValue> {
  NX_ELEMENT_HEADER(KoDrawStyleElement);

public:
  static void set(NxState* state, KoDrawStyle* node);
  static void set(NxState* state, NxNode* node, bool solid, bool edges, bool points, float fadingThreshold);
  /// The styles, and whether a node has set them.
  static bool getDrawStyle(NxState* state, bool& solid, bool& edges, bool& points);
  static float getFadingThreshold(NxState* state);
  /// Solid only, threshold 0; returns false.
  static bool getDefault(bool& solid, bool& edges, bool& points, float& fadingThreshold);

  void print(FILE* file) const override;
};
