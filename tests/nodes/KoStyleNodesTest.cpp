// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoMaterial.h>

#include "nodes/NodesTestTools.h"

#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>

namespace {

using KoStyleNodesTest = KoTest;

std::vector<std::string> fieldNames(const NxNode& node) {
  std::vector<NxField*> fields;
  node.getFields(fields);
  std::vector<std::string> names;
  for (const NxField* field : fields) {
    NbName name;
    node.getFieldName(field, name);
    names.push_back(name.getString());
  }
  return names;
}

TEST_F(KoStyleNodesTest, DrawStyleCopiesItsFieldsIntoTheState) {
  const NbRefPtr<KoDrawStyle> node(new KoDrawStyle);
  EXPECT_EQ(fieldNames(*node),
            (std::vector<std::string>{"displayFaces", "displayEdges", "displayPoints", "fadingThreshold"}));
  bool solid = false, edges = true, points = true;
  lookBelow({node.get()}, [&](NxState* state) {
    EXPECT_TRUE(KoDrawStyleElement::getDrawStyle(state, solid, edges, points)) << "defaults, but set";
  });
  EXPECT_TRUE(solid);
  EXPECT_FALSE(edges);
  EXPECT_FALSE(points);
  node->displayFaces = false;
  node->displayEdges = true;
  node->displayPoints = true;
  node->fadingThreshold = 3.5f;
  lookBelow({node.get()}, [&](NxState* state) {
    KoDrawStyleElement::getDrawStyle(state, solid, edges, points);
    EXPECT_EQ(KoDrawStyleElement::getFadingThreshold(state), 3.5f);
  });
  EXPECT_FALSE(solid);
  EXPECT_TRUE(edges);
  EXPECT_TRUE(points);
}

TEST_F(KoStyleNodesTest, MaterialCopiesItsFieldsIntoTheState) {
  const NbRefPtr<KoMaterial> node(new KoMaterial);
  EXPECT_EQ(fieldNames(*node),
            (std::vector<std::string>{"faceColoring", "lineColoring", "pointColoring", "faceColor", "lineColor",
                                      "pointColor", "transparency", "enhancedColoring"}));
  KoMaterial::ColoringType face, line, marker;
  NbColor faceColor, lineColor, markerColor;
  float transparency = 1.f;
  bool enhanced = true, isSet = false;
  const auto read = [&](NxState* state) {
    isSet = KoMaterialElement::getMaterial(state, face, faceColor, line, lineColor, marker, markerColor, transparency,
                                           enhanced);
  };
  lookBelow({node.get()}, read);
  EXPECT_TRUE(isSet) << "defaults, but set";
  EXPECT_EQ(face, KoMaterial::CONTOURING);
  EXPECT_EQ(faceColor, NbColor(1, 1, 1));
  EXPECT_EQ(lineColor, NbColor(1, 0, 0));
  EXPECT_EQ(markerColor, NbColor(0, 1, 0));
  EXPECT_EQ(transparency, 0.f);
  EXPECT_FALSE(enhanced);

  node->faceColoring = KoMaterial::COLOR;
  node->faceColor.setValue(NbColor(0.1f, 0.2f, 0.3f));
  node->lineColor.setValue(NbColor(0.4f, 0.5f, 0.6f));
  node->pointColoring = KoMaterial::COLOR;
  node->pointColor.setValue(NbColor(0.7f, 0.8f, 0.9f));
  node->transparency = 1.5f;
  node->enhancedColoring = true;
  lookBelow({node.get()}, read);
  EXPECT_EQ(face, KoMaterial::COLOR);
  EXPECT_EQ(line, KoMaterial::CONTOURING);
  EXPECT_EQ(marker, KoMaterial::COLOR);
  EXPECT_EQ(faceColor, NbColor(0.1f, 0.2f, 0.3f));
  EXPECT_EQ(lineColor, NbColor(0.4f, 0.5f, 0.6f));
  EXPECT_EQ(markerColor, NbColor(0.7f, 0.8f, 0.9f));
  EXPECT_EQ(transparency, 1.5f) << "not clamped";
  EXPECT_TRUE(enhanced);
}

TEST_F(KoStyleNodesTest, TheThreeColoringsShareOneEnumeration) {
  const NbRefPtr<KoMaterial> node(new KoMaterial);
  for (NxSFEnum* field : {&node->faceColoring, &node->lineColoring, &node->pointColoring}) {
    EXPECT_EQ(field->getNumEnums(), 2);
    EXPECT_TRUE(field->set("COLOR"));
    EXPECT_EQ(field->getValue(), 0);
    EXPECT_TRUE(field->set("CONTOURING"));
    EXPECT_EQ(field->getValue(), 1);
  }
}

TEST_F(KoStyleNodesTest, TheNearestNodeWins) {
  const NbRefPtr<KoDrawStyle> above(new KoDrawStyle), near(new KoDrawStyle);
  above->displayEdges = true;
  lookBelow({above.get(), near.get()}, [](NxState* state) {
    bool solid, edges, points;
    KoDrawStyleElement::getDrawStyle(state, solid, edges, points);
    EXPECT_FALSE(edges);
  });
}

} // namespace
