// SPDX-License-Identifier: BSD-3-Clause
#include "Subject.h"

#include <KerrinExtractor/KiMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <filesystem>

namespace {

constexpr double warp = 0.03;

/// A set that colours by the height of the nodes, for meshes that hold nothing else to colour by.
void colorByHeight(Subject& subject) {
  const std::vector<float>& coordinates = subject.arrays.coordinates;
  for (std::size_t n = 2; n < coordinates.size(); n += 3)
    subject.heights.push_back(coordinates[n]);
}

std::unique_ptr<Subject> makeUnstructured(const char* name, KbMeshMaker::Arrays arrays) {
  auto subject = std::make_unique<Subject>();
  subject->name = name;
  subject->meshType = "unstructured volume mesh";
  subject->arrays = std::move(arrays);
  colorByHeight(*subject);
  const KbMeshMaker::Arrays& made = subject->arrays;
  auto mesh = std::make_unique<KbVolumeMeshUnstructured>(made.coordinates, made.cells());
  subject->numCells = mesh->getTopology().getNumCells();
  subject->numNodes = made.values.size();
  subject->ownMesh = std::move(mesh);
  subject->ownScalars = std::make_unique<KbScalarSetI>("wave", DataBinding::PER_NODE, made.values);
  subject->ownColors = std::make_unique<KbScalarSetI>("height", DataBinding::PER_NODE, subject->heights);
  subject->mesh = subject->ownMesh.get();
  subject->scalars = subject->ownScalars.get();
  subject->colors = subject->ownColors.get();
  return subject;
}

/// The scalar set of a name; without a name the first one, per node where possible, that is not `except`.
const KiTypedDataSet<double>* findScalars(const KbMeshFile& file, const std::string& name,
                                          const KiTypedDataSet<double>* except = nullptr) {
  const KiTypedDataSet<double>* perCell = nullptr;
  for (const KbMeshFile::Set& set : file.getSets()) {
    if (set.numComponents != 1 || (!name.empty() && set.name != name)) continue;
    const auto* scalars = dynamic_cast<const KiTypedDataSet<double>*>(set.set);
    if (!scalars || scalars == except) continue;
    if (!name.empty() || set.binding == DataBinding::PER_NODE) return scalars;
    if (!perCell) perCell = scalars;
  }
  return perCell;
}

std::string namesOfScalars(const KbMeshFile& file) {
  std::string names;
  for (const KbMeshFile::Set& set : file.getSets()) {
    if (set.numComponents == 1) names += (names.empty() ? "" : ", ") + set.name;
  }
  return names.empty() ? "it has no scalar array" : "it has " + names;
}

} // namespace

std::unique_ptr<Subject> makeRegular() {
  constexpr std::size_t n = 64;
  auto subject = std::make_unique<Subject>();
  subject->name = "regular";
  subject->meshType = "regular volume mesh";
  subject->arrays = KbMeshMaker::lattice({n, n, n});
  colorByHeight(*subject);
  subject->numCells = n * n * n;
  subject->numNodes = subject->arrays.values.size();
  const KbIndex<3> nodes{n + 1, n + 1, n + 1};
  subject->ownMesh =
      std::make_unique<KbVolumeMeshRegular>(KbIndex<3>{n, n, n}, KbVec3<double>(0.0), KbVec3<double>(1.0));
  subject->ownScalars = std::make_unique<KbScalarSetIjk>("wave", DataBinding::PER_NODE, subject->arrays.values, nodes);
  subject->ownColors = std::make_unique<KbScalarSetIjk>("height", DataBinding::PER_NODE, subject->heights, nodes);
  subject->mesh = subject->ownMesh.get();
  subject->scalars = subject->ownScalars.get();
  subject->colors = subject->ownColors.get();
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
    throw UsageError("file '" + options.file + "' holds a " + file.getMeshTypeName() +
                     "; isosurfaces need a volume mesh");
  subject->name = std::filesystem::path(options.file).stem().string();
  subject->meshType = file.getMeshTypeName();
  subject->numCells = file.getNumCells();
  subject->numNodes = file.getNumNodes();
  subject->mesh = file.getMesh();
  const auto refuse = [&](const std::string& name) {
    return UsageError("file '" + options.file + "' has no scalar array" + (name.empty() ? "" : " '" + name + "'; ") +
                      (name.empty() ? "" : namesOfScalars(file)));
  };
  subject->scalars = findScalars(file, options.scalar);
  if (!subject->scalars) throw refuse(options.scalar);
  subject->colors = findScalars(file, options.color, options.color.empty() ? subject->scalars : nullptr);
  if (!subject->colors && !options.color.empty()) throw refuse(options.color);
  if (!subject->colors) subject->colors = subject->scalars;
  return subject;
}
