// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoDrawStyleElement, NxReplacedElement)

namespace {

const KoDrawStyleElementValue UNSET;

} // namespace

void KoDrawStyleElement::set(NxState* state, KoDrawStyle* node) {
  set(state, node, node->displayFaces.getValue(), node->displayEdges.getValue(), node->displayPoints.getValue(),
      node->fadingThreshold.getValue());
}

void KoDrawStyleElement::set(NxState* state, NxNode* node, bool solid, bool edges, bool points, float fadingThreshold) {
  if (KoDrawStyleElementValue* value = getWritable(state, node)) *value = {solid, edges, points, fadingThreshold, true};
}

bool KoDrawStyleElement::getDrawStyle(NxState* state, bool& solid, bool& edges, bool& points) {
  const KoDrawStyleElementValue* value = getReadable(state);
  float fadingThreshold;
  if (!value || !value->isSet) return getDefault(solid, edges, points, fadingThreshold);
  solid = value->displaySolid;
  edges = value->displayEdges;
  points = value->displayPoints;
  return true;
}

float KoDrawStyleElement::getFadingThreshold(NxState* state) {
  const KoDrawStyleElementValue* value = getReadable(state);
  return value && value->isSet ? value->fadingThreshold : UNSET.fadingThreshold;
}

bool KoDrawStyleElement::getDefault(bool& solid, bool& edges, bool& points, float& fadingThreshold) {
  solid = UNSET.displaySolid;
  edges = UNSET.displayEdges;
  points = UNSET.displayPoints;
  fadingThreshold = UNSET.fadingThreshold;
  return UNSET.isSet;
}

void KoDrawStyleElement::print(FILE* file) const {
  fprintf(file, "\t DrawStyle set: %d\n", m_value.isSet);
  fprintf(file, "\t DisplaySolid: %d\n", m_value.displaySolid);
  fprintf(file, "\t DisplayEdges: %d\n", m_value.displayEdges);
  fprintf(file, "\t DisplayPoints: %d\n", m_value.displayPoints);
  fprintf(file, "\t FadingThreshold: %f\n", static_cast<double>(m_value.fadingThreshold));
}
