// SPDX-License-Identifier: BSD-3-Clause
#include "Picture.h"

#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinDataMapping/nodes/KoPredefinedColorMapping.h>
#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiExtractorCallback.h>
#include <Nyx/base/NbElapsedTime.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/nodes/NxDirectionalLight.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/render/NxOffscreenRenderer.h>

#include <stdexcept>

namespace {

/// Adds up the time that extractions take.
class Stopwatch : public KiExtractorCallback {
public:
  void beginExtract(std::string, bool, bool, bool, std::size_t) override { m_time.reset(); }
  void endExtract() override { m_milliseconds += 1e3 * m_time.getElapsed(); }
  bool beginPhase(std::size_t, std::string, std::size_t) override { return true; }
  bool endPhase() override { return true; }
  bool endStep(std::size_t) override { return true; }
  double getEndStepCallPeriod() override { return 1.0; }

  double getMilliseconds() const { return m_milliseconds; }

private:
  NbElapsedTime m_time;
  double m_milliseconds = 0.0;
};

KoScalarSet* makeSetNode(const KiTypedDataSet<double>* set) {
  auto* node = new KoScalarSet;
  node->setScalarSet(set);
  return node;
}

NxDirectionalLight* makeLight(const NbVec3f& direction, float intensity) {
  auto* light = new NxDirectionalLight;
  light->direction = direction;
  light->intensity = intensity;
  return light;
}

/// The area of an extracted surface, its polygons taken as fans of triangles.
double areaOf(const KeXSurfaceMeshUnstructured& surface) {
  std::vector<KbVec3<double>> corners;
  double area = 0.0;
  for (std::size_t c = 0; c < surface.getTopology().getNumCells(); ++c) {
    const KiCell& cell = *surface.getTopology().getCell(c);
    corners.clear();
    for (std::size_t n = 0; n < cell.getNumNodes(); ++n)
      corners.push_back(surface.getGeometry().getCoord(cell.getNodeIndex(n)));
    for (std::size_t n = 2; n < corners.size(); ++n)
      area += 0.5 * (corners[n - 1] - corners[0]).cross(corners[n] - corners[0]).length();
  }
  return area;
}

} // namespace

PictureFacts drawIsosurface(const Subject& subject, double isovalue, NxOffscreenRenderer& renderer,
                            const std::string& fileName) {
  NbRefPtr<NxSeparator> root = new NxSeparator;
  auto* camera = new NxPerspectiveCamera;
  root->addChild(camera);
  // A strong light over the left shoulder, a weak one from the right: together they stay below full brightness, so that
  // colours can be read everywhere.
  root->addChild(makeLight(NbVec3f(-0.4f, -1.f, -1.f), 0.75f));
  root->addChild(makeLight(NbVec3f(-1.f, 0.2f, 0.3f), 0.3f));

  auto* mesh = new KoMesh;
  mesh->setMesh(subject.mesh);
  root->addChild(mesh);
  root->addChild(makeSetNode(subject.scalars)); // set 0 is cut,
  root->addChild(makeSetNode(subject.colors));  // set 1 colours

  auto* mapping = new KoPredefinedColorMapping;
  mapping->predefColorMap = KoPredefinedColorMapping::RAINBOW_TURBO;
  mapping->minValue = static_cast<float>(subject.colors->getMin());
  mapping->maxValue = static_cast<float>(subject.colors->getMax());
  root->addChild(mapping);
  root->addChild(new KoMaterial);
  root->addChild(new KoDrawStyle);

  Stopwatch stopwatch;
  auto* isosurface = new KoMeshIsosurface;
  isosurface->isovalue = static_cast<float>(isovalue);
  isosurface->isoScalarSetId = 0;
  isosurface->colorScalarSetId = 1;
  isosurface->setExtractorCallback(stopwatch);
  root->addChild(isosurface);

  PictureFacts facts;
  NbElapsedTime time;
  camera->position = NbVec3f(2.f, 1.4f, 2.4f);
  camera->pointAt(NbVec3f(0.f, 0.f, 0.f));
  camera->viewAll(root, renderer.getViewportRegion());
  bool drawn = renderer.render(root);
  facts.firstFrameMs = 1e3 * time.getElapsed();
  time.reset();
  drawn = drawn && renderer.render(root);
  facts.secondFrameMs = 1e3 * time.getElapsed();
  if (!drawn || !renderer.writeToPNG(fileName)) throw std::runtime_error("'" + fileName + "' could not be drawn");

  MeshType type = UNDEFINED_MESH_TYPE;
  if (const auto* surface = dynamic_cast<const KeXSurfaceMeshUnstructured*>(isosurface->getExtractedMesh(type))) {
    facts.numOutputCells = surface->getTopology().getNumCells();
    facts.outputArea = areaOf(*surface);
  }
  facts.extractionMs = stopwatch.getMilliseconds();
  isosurface->setExtractorCallback(nullptr);
  return facts;
}
