// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinMesh/KbMeshFile.h>

#include "KbMeshFileContent.h"

#include <cctype>
#include <filesystem>
#include <fstream>

namespace {

constexpr const char* meshTypeNames[] = {
    "unstructured volume mesh",  "hexahedron ijk volume mesh", "vertex hexahedron ijk volume mesh",
    "regular volume mesh",       "rectilinear volume mesh",    "curvilinear volume mesh",
    "unstructured surface mesh", "regular surface mesh",       "rectilinear surface mesh",
    "curvilinear surface mesh",  "unstructured line mesh",     "regular line mesh",
    "curvilinear line mesh"};

constexpr const char* vtkExtensions[] = {".vtk", ".vtu", ".vti", ".vtr", ".vts",
                                         ".vtp", ".ply", ".obj", ".stl", ".inp"};

std::string lowerExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension;
}

/// Fills `content`, or its error.
void read(const std::string& path, KbMeshFile::Content& content) {
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    content.error = "does not exist";
  } else if (!std::filesystem::is_regular_file(path, ignored)) {
    content.error = "is no regular file";
  } else if (!std::ifstream(path)) {
    content.error = "cannot be opened";
  } else {
    const std::string extension = lowerExtension(path);
    if (extension == ".grdecl") return kx::readGrdecl(path, content);
    if (std::find(std::begin(vtkExtensions), std::end(vtkExtensions), extension) != std::end(vtkExtensions))
      return kx::readByVtk(path, extension, content);
    content.error = "is of an unknown kind; known are .grdecl";
    for (const char* known : vtkExtensions)
      content.error += std::string(", ") + known;
  }
}

} // namespace

KbMeshFile::KbMeshFile() = default;
KbMeshFile::KbMeshFile(std::unique_ptr<Content> content)
    : m_content(std::move(content)) {}
KbMeshFile::KbMeshFile(KbMeshFile&& other) noexcept = default;
KbMeshFile& KbMeshFile::operator=(KbMeshFile&& other) noexcept = default;
KbMeshFile::~KbMeshFile() = default;

const KbMeshFile::Content& KbMeshFile::content() const {
  static const Content nothing;
  return m_content ? *m_content : nothing;
}

const std::string& KbMeshFile::getError() const { return content().error; }
const std::vector<std::string>& KbMeshFile::getNotes() const { return content().notes; }
const KiMesh* KbMeshFile::getMesh() const { return content().mesh.get(); }
int KbMeshFile::getMeshType() const { return content().meshType; }
std::string KbMeshFile::getMeshTypeName() const {
  return getMesh() ? meshTypeNames[content().meshType] : std::string("no mesh");
}
std::size_t KbMeshFile::getNumCells() const { return content().numCells; }
std::size_t KbMeshFile::getNumDeadCells() const { return content().numDeadCells; }
std::size_t KbMeshFile::getNumNodes() const { return content().numNodes; }
KbVec3<double> KbMeshFile::getMin() const {
  return content().geometry ? content().geometry->getMin() : KbVec3<double>();
}
KbVec3<double> KbMeshFile::getMax() const {
  return content().geometry ? content().geometry->getMax() : KbVec3<double>();
}
const std::vector<KbMeshFile::Set>& KbMeshFile::getSets() const { return content().sets; }
const std::vector<double>& KbMeshFile::getMapAxes() const { return content().mapAxes; }

const KbMeshFile::Set* KbMeshFile::findSet(const std::string& name, DataBinding binding) const {
  for (const Set& set : content().sets) { // those per node come first
    if (set.name == name && (binding == DataBinding::AUTO || set.binding == binding)) return &set;
  }
  return nullptr;
}

KbMeshFile KbReadMesh(const std::string& path) {
  auto content = std::make_unique<KbMeshFile::Content>();
  try {
    read(path, *content);
    if (content->error.empty() && (!content->mesh || content->numCells == 0)) {
      content->error = "has no cells that make a mesh";
      for (const std::string& note : content->notes)
        content->error += "; " + note;
    }
  } catch (const std::exception& exception) { // not enough memory, above all
    content->error = std::string("cannot be read: ") + exception.what();
  }
  if (content->error.empty()) return KbMeshFile(std::move(content));
  auto failed = std::make_unique<KbMeshFile::Content>();
  failed->error = "file '" + path + "' " + content->error;
  failed->notes = std::move(content->notes);
  return KbMeshFile(std::move(failed));
}
