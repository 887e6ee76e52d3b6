// SPDX-License-Identifier: BSD-3-Clause
#include "Subject.h"

#include <KerrinExtractor/KiMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <filesystem>

namespace {

constexpr double warp = 0.03;

/// The height of a node of a structured mesh, or of a cell where cells have corners of their own.
double heightAt(const KiMeshIjk& mesh, const KbIndex<3>& at, const KbIndex<3>& numCells) {
  if (const auto* regular = dynamic_cast<const KiVolumeMeshRegular*>(&mesh)) {
    const double bottom = regular->getGeometry().getMin()[2];
    const double top = regular->getGeometry().getMax()[2];
    return bottom + (top - bottom) * static_cast<double>(at[2]) / static_cast<double>(numCells[2]);
  }
  if (const auto* rectilinear = dynamic_cast<const KiVolumeMeshRectilinear*>(&mesh))
    return rectilinear->getGeometry().getZ(at[2]);
  if (const auto* curvilinear = dynamic_cast<const KiVolumeMeshCurvilinear*>(&mesh))
    return curvilinear->getGeometry().getCoord(at[0], at[1], at[2])[2];
  KbVec3<double> corners[8];
  dynamic_cast<const KiVolumeMeshVertexHexahedronIjk&>(mesh).getGeometry().getCellCorners(at[0], at[1], at[2], corners);
  return 0.5 * (corners[0][2] + corners[6][2]);
}

/// Colours by height: a set of the z coordinates.
void colorByHeight(Subject& subject) {
  std::vector<double>& heights = subject.heights;
  if (const auto* unstructured = dynamic_cast<const KiMeshUnstructured*>(subject.mesh)) {
    for (std::size_t n = 0; n < subject.numNodes; ++n)
      heights.push_back(unstructured->getGeometry().getCoord(n)[2]);
    subject.ownColors = std::make_unique<KbScalarSetI>("height", DataBinding::PER_NODE, heights);
  } else {
    const auto& mesh = dynamic_cast<const KiMeshIjk&>(*subject.mesh);
    const KiTopologyIjk& topology = mesh.getTopology();
    const KbIndex<3> numCells{topology.getNumCellsI(), topology.getNumCellsJ(), topology.getNumCellsK()};
    const bool perCell = dynamic_cast<const KiVolumeMeshVertexHexahedronIjk*>(&mesh) != nullptr;
    KbIndex<3> counts = numCells;
    for (std::size_t& count : counts)
      count += perCell ? 0 : 1;
    for (std::size_t k = 0; k < counts[2]; ++k) {
      for (std::size_t j = 0; j < counts[1]; ++j) {
        for (std::size_t i = 0; i < counts[0]; ++i)
          heights.push_back(heightAt(mesh, {i, j, k}, numCells));
      }
    }
    subject.ownColors = std::make_unique<KbScalarSetIjk>(
        "height", perCell ? DataBinding::PER_CELL : DataBinding::PER_NODE, heights, counts);
  }
  subject.colors = subject.ownColors.get();
}

std::unique_ptr<Subject> makeUnstructured(const char* name, KbMeshMaker::Arrays arrays) {
  auto subject = std::make_unique<Subject>();
  subject->name = name;
  subject->meshType = "unstructured volume mesh";
  subject->arrays = std::move(arrays);
  const KbMeshMaker::Arrays& made = subject->arrays;
  auto mesh = std::make_unique<KbVolumeMeshUnstructured>(made.coordinates, made.cells());
  subject->numCells = mesh->getTopology().getNumCells();
  subject->numNodes = made.values.size();
  subject->ownMesh = std::move(mesh);
  subject->ownScalars = std::make_unique<KbScalarSetI>("wave", DataBinding::PER_NODE, made.values);
  subject->mesh = subject->ownMesh.get();
  subject->scalars = subject->ownScalars.get();
  colorByHeight(*subject);
  return subject;
}

/// The scalar set of a name; without a name the first one, per node where possible.
const KiTypedDataSet<double>* findScalars(const KbMeshFile& file, const std::string& name) {
  const KiTypedDataSet<double>* perCell = nullptr;
  for (const KbMeshFile::Set& set : file.getSets()) {
    if (set.numComponents != 1 || (!name.empty() && set.name != name)) continue;
    const auto* scalars = dynamic_cast<const KiTypedDataSet<double>*>(set.set);
    if (!name.empty() || set.binding == DataBinding::PER_NODE) return scalars;
    if (!perCell) perCell = scalars;
  }
  return perCell;
}

/// A scalar set per node other than the one that is cut; null when there is none.
const KiTypedDataSet<double>* findOtherNodeScalars(const KbMeshFile& file, const KiTypedDataSet<double>* cut) {
  for (const KbMeshFile::Set& set : file.getSets()) {
    const auto* scalars = dynamic_cast<const KiTypedDataSet<double>*>(set.set);
    if (scalars && scalars != cut && set.binding == DataBinding::PER_NODE) return scalars;
  }
  return nullptr;
}

std::string namesOfScalars(const KbMeshFile& file) {
  std::string names;
  for (const KbMeshFile::Set& set : file.getSets()) {
    if (set.numComponents == 1) names += (names.empty() ? "" : ", ") + set.name;
  }
  return "it has " + names;
}

} // namespace

std::unique_ptr<Subject> makeRegular() {
  constexpr std::size_t n = 64;
  auto subject = std::make_unique<Subject>();
  subject->name = "regular";
  subject->meshType = "regular volume mesh";
  subject->arrays = KbMeshMaker::lattice({n, n, n});
  subject->numCells = n * n * n;
  subject->numNodes = subject->arrays.values.size();
  const KbIndex<3> nodes{n + 1, n + 1, n + 1};
  subject->ownMesh =
      std::make_unique<KbVolumeMeshRegular>(KbIndex<3>{n, n, n}, KbVec3<double>(0.0), KbVec3<double>(1.0));
  subject->ownScalars = std::make_unique<KbScalarSetIjk>("wave", DataBinding::PER_NODE, subject->arrays.values, nodes);
  subject->mesh = subject->ownMesh.get();
  subject->scalars = subject->ownScalars.get();
  colorByHeight(*subject);
  return subject;
}

std::unique_ptr<Subject> makeTetrahedra() {
  return makeUnstructured("tetrahedra", KbMeshMaker::tetrahedra({32, 32, 32}, warp));
}

std::unique_ptr<Subject> makeHexahedra() {
  return makeUnstructured("hexahedra", KbMeshMaker::hexahedra({48, 48, 48}, warp));
}

std::unique_ptr<Subject> readSubject(const Options& options) {
  auto subject = std::make_unique<Subject>();
  subject->file = KbReadMesh(options.file);
  const KbMeshFile& file = subject->file;
  if (!file) throw UsageError(file.getError());
  if (!file.isVolume())
    throw UsageError("file '" + options.file + "' holds no volume mesh (" + file.getMeshTypeName() + ")");
  subject->name = std::filesystem::path(options.file).stem().string();
  subject->meshType = file.getMeshTypeName();
  subject->numCells = file.getNumCells();
  subject->numNodes = file.getNumNodes();
  subject->mesh = file.getMesh();
  const auto require = [&](const std::string& name) {
    if (const KiTypedDataSet<double>* scalars = findScalars(file, name)) return scalars;
    throw UsageError("file '" + options.file + "' has no scalar array '" + name + "'; " + namesOfScalars(file));
  };
  if (!findScalars(file, "")) throw UsageError("file '" + options.file + "' has no scalar array");
  subject->scalars = require(options.scalar);
  subject->colors = options.color.empty() ? findOtherNodeScalars(file, subject->scalars) : require(options.color);
  if (!subject->colors) colorByHeight(*subject);
  return subject;
}
