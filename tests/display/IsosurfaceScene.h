// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "nodes/NodesTestTools.h"
#include "nodes/VolumeMeshes.h"

#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoLevelColorMapping.h>
#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinDataMapping/nodes/KoPredefinedColorMapping.h>
#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/misc/NxChildList.h>
#include <Nyx/nodes/NxBBox.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxMaterial.h>
#include <Nyx/nodes/NxPickStyle.h>
#include <Nyx/nodes/NxPolygonOffset.h>
#include <Nyx/nodes/NxSwitch.h>
#include <Nyx/nodes/NxTexture2.h>
#include <Nyx/nodes/NxVertexProperty.h>
#include <Nyx/shapes/NxIndexedFaceSetOutline.h>

/// One style of a display: its nodes, in the order in which they stand in their group.
struct StyleNodes {
  explicit StyleNodes(NxGroup* group)
      : levelTexture(dynamic_cast<NxSwitch*>(group->getChild(0)))
      , drawStyle(dynamic_cast<NxDrawStyle*>(group->getChild(1)))
      , uniformColor(dynamic_cast<NxSwitch*>(group->getChild(2)))
      , material(dynamic_cast<NxMaterial*>(uniformColor->getChild(0)))
      , shape(dynamic_cast<NxIndexedShape*>(group->getChild(3))) {}

  bool isUniform() const { return uniformColor->whichChild.getValue() == NxSwitch::SWITCH_ALL; }
  bool isTextured() const { return levelTexture->whichChild.getValue() == NxSwitch::SWITCH_ALL; }
  int style() const { return drawStyle->style.getValue(); }

  NxSwitch* levelTexture;
  NxDrawStyle* drawStyle;
  NxSwitch* uniformColor;
  NxMaterial* material;
  NxIndexedShape* shape;
};

/// The surface x = 0.375 of the unit cube (see VolumeMeshes) and a look at the graph that displays it.
class IsosurfaceScene : public KoTest {
protected:
  IsosurfaceScene() {
    root->addChild(meshNode.get());
    root->addChild(setNode.get());
    root->addChild(isosurface.get());
    isosurface->isovalue = 0.375f;
    use(VOLUME_UNSTRUCTURED);
  }

  void use(MeshType type) { use(type, meshes.nodeSet(type)); }
  void use(MeshType type, const KiTypedDataSet<double>* set) {
    meshNode->setMesh(meshes.mesh(type));
    setNode->setScalarSet(set);
  }

  /// Adds a new node of a class in front of the isosurface.
  template <class Node>
  Node* add() {
    auto* node = new Node;
    root->insertChild(node, root->findChild(isosurface.get()));
    return node;
  }

  void traverse() {
    NxCallbackAction action;
    action.apply(root.get());
  }

  NxSeparator* display() {
    return dynamic_cast<NxSeparator*>(static_cast<NxGroup*>((*isosurface->getChildren())[0])->getChild(0));
  }
  NxBBox* boundingBox() { return dynamic_cast<NxBBox*>(display()->getChild(1)); }
  NxSwitch* extraStyles() { return dynamic_cast<NxSwitch*>(display()->getChild(3)); }
  StyleNodes faces() { return StyleNodes(static_cast<NxGroup*>(display()->getChild(2))); }
  StyleNodes edges() { return StyleNodes(static_cast<NxGroup*>(extraStyles()->getChild(1))); }
  StyleNodes points() { return StyleNodes(static_cast<NxGroup*>(extraStyles()->getChild(2))); }
  NxVertexProperty* vertices() { return dynamic_cast<NxVertexProperty*>(faces().shape->vertexProperty.getValue()); }

  /// The change ids of the arrays that a refill would touch.
  struct Fill {
    uint64_t indices, vertices, colors, textureCoordinates;
  };
  Fill fill() {
    return {faces().shape->coordIndex.getChangeId(), vertices()->vertex.getChangeId(),
            vertices()->orderedRGBA.getChangeId(), vertices()->texCoord.getChangeId()};
  }

  const VolumeMeshes meshes;
  const NbRefPtr<NxSeparator> root{new NxSeparator};
  const NbRefPtr<KoMesh> meshNode{new KoMesh};
  const NbRefPtr<KoScalarSet> setNode{new KoScalarSet};
  const NbRefPtr<KoMeshIsosurface> isosurface{new KoMeshIsosurface};
};
