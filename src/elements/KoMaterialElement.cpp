// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoMaterialElement.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoMaterialElement, NxReplacedElement)

namespace {

const KoMaterialElementValue UNSET;

void printColoring(FILE* file, const char* style, KoMaterial::ColoringType coloring, const NbColor& color) {
  fprintf(file, "\t %sColoring: %d\n", style, static_cast<int>(coloring));
  fprintf(file, "\t %sColor: (%f,%f,%f)\n", style, static_cast<double>(color[0]), static_cast<double>(color[1]),
          static_cast<double>(color[2]));
}

/// Fills what the getters give out; returns whether a node has set it.
bool fill(const KoMaterialElementValue& value, KoMaterial::ColoringType& faceColoring, NbColor& faceColor,
          KoMaterial::ColoringType& lineColoring, NbColor& lineColor, KoMaterial::ColoringType& markerColoring,
          NbColor& markerColor, float& transparency, bool& enhancedColoring) {
  faceColoring = value.faceColoring;
  faceColor = value.faceColor;
  lineColoring = value.lineColoring;
  lineColor = value.lineColor;
  markerColoring = value.markerColoring;
  markerColor = value.markerColor;
  transparency = value.transparency;
  enhancedColoring = value.enhancedColoring;
  return value.isSet;
}

} // namespace

void KoMaterialElement::set(NxState* state, NxNode* node, ColoringType faceColoring, const NbColor& faceColor,
                            ColoringType lineColoring, const NbColor& lineColor, ColoringType markerColoring,
                            const NbColor& markerColor, float transparency, bool enhancedColoring) {
  if (KoMaterialElementValue* value = getWritable(state, node))
    *value = {faceColoring, faceColor,    lineColoring,     lineColor, markerColoring,
              markerColor,  transparency, enhancedColoring, true};
}

bool KoMaterialElement::getMaterial(NxState* state, ColoringType& faceColoring, NbColor& faceColor,
                                    ColoringType& lineColoring, NbColor& lineColor, ColoringType& markerColoring,
                                    NbColor& markerColor, float& transparency, bool& enhancedColoring) {
  const KoMaterialElementValue* value = getReadable(state);
  return fill(value ? *value : UNSET, faceColoring, faceColor, lineColoring, lineColor, markerColoring, markerColor,
              transparency, enhancedColoring);
}

bool KoMaterialElement::getColoringTypes(NxState* state, ColoringType& face, ColoringType& line, ColoringType& marker) {
  const KoMaterialElementValue* element = getReadable(state);
  const KoMaterialElementValue& value = element ? *element : UNSET;
  face = value.faceColoring;
  line = value.lineColoring;
  marker = value.markerColoring;
  return value.isSet;
}

bool KoMaterialElement::getEnhancedColoring(NxState* state) {
  const KoMaterialElementValue* value = getReadable(state);
  return value && value->isSet ? value->enhancedColoring : UNSET.enhancedColoring;
}

bool KoMaterialElement::getDefault(ColoringType& faceColoring, NbColor& faceColor, ColoringType& lineColoring,
                                   NbColor& lineColor, ColoringType& markerColoring, NbColor& markerColor,
                                   float& transparency, bool& enhancedColoring) {
  return fill(UNSET, faceColoring, faceColor, lineColoring, lineColor, markerColoring, markerColor, transparency,
              enhancedColoring);
}

void KoMaterialElement::print(FILE* file) const {
  fprintf(file, "\t Material set: %d\n", m_value.isSet);
  printColoring(file, "Face", m_value.faceColoring, m_value.faceColor);
  printColoring(file, "Line", m_value.lineColoring, m_value.lineColor);
  printColoring(file, "Marker", m_value.markerColoring, m_value.markerColor);
  fprintf(file, "\t Transparency: %f\n", static_cast<double>(m_value.transparency));
  fprintf(file, "\t EnhancedColoring: %d\n", m_value.enhancedColoring);
}
