// SPDX-License-Identifier: BSD-3-Clause
// The smallest program: a mesh and a data set of the application's own, and the picture of an isosurface of them.
#include <KerrinDataMapping/KoKerrin.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinDataMapping/nodes/KoPredefinedColorMapping.h>
#include <KerrinDataMapping/nodes/KoScalarSetIjk.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/render/NxOffscreenRenderer.h>

namespace {

constexpr std::size_t numCells = 50;

// What the application has: a box of cells and a function. It tells the library about them through the interfaces, and
// nothing is copied. Nothing ever changes here, so that all time stamps stay the same.
class Cells : public KiTopologyIjk {
public:
  std::size_t getTimeStamp() const override { return 1; }
  std::size_t getNumCellsI() const override { return numCells; }
  std::size_t getNumCellsJ() const override { return numCells; }
  std::size_t getNumCellsK() const override { return numCells; }
  bool isDead(std::size_t, std::size_t, std::size_t) const override { return false; }
};

class Box : public KiGeometryRegular {
public:
  std::size_t getTimeStamp() const override { return 1; }
  KbVec3<double> getMin() const override { return {-1.0, -1.0, -1.0}; }
  KbVec3<double> getMax() const override { return {1.0, 1.0, 1.0}; }
};

class Mesh : public KiVolumeMeshRegular {
public:
  const Cells& getTopology() const override { return m_cells; }
  const Box& getGeometry() const override { return m_box; }

private:
  Cells m_cells;
  Box m_box;
};

/// x^2 + y^2 - z^2 at each node: a hyperboloid where it is 0.1.
class Values : public KiDataSetIjk<double> {
public:
  std::size_t getTimeStamp() const override { return 1; }
  std::string getName() const override { return "saddle"; }
  DataBinding getBinding() const override { return DataBinding::PER_NODE; }
  double getMin() const override { return -1.0; }
  double getMax() const override { return 2.0; }
  double get(std::size_t i, std::size_t j, std::size_t k) const override {
    const auto at = [](std::size_t n) { return 2.0 * static_cast<double>(n) / numCells - 1.0; };
    return at(i) * at(i) + at(j) * at(j) - at(k) * at(k);
  }
};

} // namespace

int main() {
  KoKerrin::init();
  bool done = false;
  {
    const Mesh mesh;
    const Values values;

    NbRefPtr<NxSeparator> root = new NxSeparator;
    auto* camera = new NxPerspectiveCamera;
    root->addChild(camera);

    auto* meshNode = new KoMesh;
    meshNode->setMesh(&mesh);
    root->addChild(meshNode);

    auto* setNode = new KoScalarSetIjk;
    setNode->setScalarSet(&values);
    root->addChild(setNode);

    auto* colors = new KoPredefinedColorMapping;
    colors->predefColorMap = KoPredefinedColorMapping::TEMPERATURE;
    root->addChild(colors);

    auto* isosurface = new KoMeshIsosurface;
    isosurface->isovalue = 0.1f;
    root->addChild(isosurface);

    const NbViewportRegion viewport(640, 480);
    camera->position = NbVec3f(3.f, 2.f, 2.f);
    camera->pointAt(NbVec3f(0.f, 0.f, 0.f));
    camera->viewAll(root, viewport);
    NxOffscreenRenderer renderer(viewport);
    renderer.setHeadlight(true);
    done = renderer.render(root) && renderer.writeToPNG("isosurface.png");
  }
  KoKerrin::finish();
  return done ? 0 : 1;
}
