// SPDX-License-Identifier: BSD-3-Clause
#include "display/IsosurfaceScene.h"
#include "render/ImageCompare.h"

#include <Nyx/nodes/NxDirectionalLight.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>
#include <Nyx/render/NxOffscreenRenderer.h>

#include <cmath>

namespace {

/// The surface of a wavy field over the unit cube in each mesh kind, seen from a corner.
class IsosurfaceRender : public KoTest {
protected:
  static constexpr std::size_t N = 24;

  IsosurfaceRender() {
    auto* camera = new NxPerspectiveCamera;
    camera->position.setValue(NbVec3f(2.1f, 1.7f, 2.9f));
    camera->pointAt(NbVec3f(0.5f, 0.5f, 0.5f));
    camera->nearDistance = 0.5f;
    camera->farDistance = 10.f;
    camera->heightAngle = 0.5f;
    root->addChild(camera);
    auto* light = new NxDirectionalLight;
    light->direction.setValue(NbVec3f(-1.f, -0.6f, -1.4f));
    root->addChild(light);
    root->addChild(mesh);
    root->addChild(set);
    auto* mapping = new KoPredefinedColorMapping;
    mapping->predefColorMap = KoPredefinedColorMapping::RAINBOW_TURBO;
    root->addChild(mapping);
    root->addChild(material);
    root->addChild(style);
    root->addChild(surface);
    surface->isovalue = 0.1f;
    surface->colorScalarSetId = 1;
    renderer.setBackgroundColor(NbColorRGBA(1.f, 1.f, 1.f, 1.f));
    renderer.setNumSamples(4);
  }

  static double field(const KbVec3<double>& p) {
    return p[2] - 0.5 + 0.2 * std::sin(7.0 * p[0]) * std::cos(5.0 * p[1]);
  }

  const NbRefPtr<NxSeparator> root{new NxSeparator};
  KoMesh* const mesh = new KoMesh;
  KoScalarSet* const set = new KoScalarSet;
  KoMaterial* const material = new KoMaterial;
  KoDrawStyle* const style = new KoDrawStyle;
  KoMeshIsosurface* const surface = new KoMeshIsosurface;
  NxOffscreenRenderer renderer{NbViewportRegion(320, 240)};
};

} // namespace
