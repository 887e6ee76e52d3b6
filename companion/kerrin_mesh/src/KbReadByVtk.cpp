// SPDX-License-Identifier: BSD-3-Clause
// Files that VTK reads. What it has to say is caught and becomes the error or the notes.
#include "KbVtkArrays.h"
#include "KbVtkChecks.h"

#include <vtkAVSucdReader.h>
#include <vtkDataSet.h>
#include <vtkDataSetReader.h>
#include <vtkLogger.h>
#include <vtkOBJReader.h>
#include <vtkObjectFactory.h>
#include <vtkOutputWindow.h>
#include <vtkPLYReader.h>
#include <vtkPolyData.h>
#include <vtkSTLReader.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLGenericDataObjectReader.h>

#include <mutex>

namespace {

/// What VTK says, without the place in its source and addresses of objects, and only the first line of it.
std::string plainText(const std::string& said) {
  std::string text = said;
  if (text.find("In ") < text.find('\n')) text.erase(0, text.find('\n') + 1);
  text.resize(std::min(text.find('\n'), text.size()));
  if (const std::size_t object = text.find("): "); object != std::string::npos) text.erase(0, object + 3);
  for (std::size_t at = text.find("(0x"); at != std::string::npos; at = text.find("(0x")) {
    const std::size_t end = std::min(text.find(')', at), text.size() - 1);
    text.erase(at, end - at + 1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '.'))
    text.pop_back();
  if (text.find("returned failure for request") != std::string::npos ||
      text.find("did not create output") != std::string::npos)
    text = "it is damaged or of another kind";
  return text;
}

/// Takes the place of VTK's output window while a file is read.
class Listener : public vtkOutputWindow {
public:
  static Listener* New() { VTK_STANDARD_NEW_BODY(Listener); }
  void DisplayText(const char*) override {}
  void DisplayErrorText(const char* text) override { errors.push_back(plainText(text)); }
  void DisplayWarningText(const char* text) override { warnings.push_back(plainText(text)); }
  void DisplayGenericWarningText(const char* text) override { warnings.push_back(plainText(text)); }
  void DisplayDebugText(const char*) override {}

  std::vector<std::string> errors;
  std::vector<std::string> warnings;
};

/// Puts the listener into its place and the old window back; one reading at a time, for VTK has one window. VTK writes
/// to its log besides, which keeps silent on standard error meanwhile.
class Listening {
public:
  Listening()
      : m_lock(s_mutex)
      , m_before(vtkOutputWindow::GetInstance())
      , m_verbosity(vtkLogger::GetCurrentVerbosityCutoff()) {
    vtkOutputWindow::SetInstance(m_listener);
    vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF);
  }
  ~Listening() {
    vtkLogger::SetStderrVerbosity(m_verbosity);
    vtkOutputWindow::SetInstance(m_before);
  }
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;

  const Listener& heard() const { return *m_listener; }

private:
  static inline std::mutex s_mutex;
  std::lock_guard<std::mutex> m_lock;
  vtkSmartPointer<vtkOutputWindow> m_before;
  vtkLogger::Verbosity m_verbosity;
  vtkSmartPointer<Listener> m_listener = vtkSmartPointer<Listener>::New();
};

template <class Reader>
vtkSmartPointer<vtkDataObject> readWith(const std::string& path) {
  const auto reader = vtkSmartPointer<Reader>::New();
  reader->SetFileName(path.c_str());
  if constexpr (std::is_same_v<Reader, vtkDataSetReader>) {
    reader->ReadAllScalarsOn();
    reader->ReadAllVectorsOn();
    reader->ReadAllNormalsOn();
    reader->ReadAllTensorsOn();
    reader->ReadAllColorScalarsOn();
    reader->ReadAllTCoordsOn();
    reader->ReadAllFieldsOn();
  }
  reader->Update();
  return reader->GetOutputDataObject(0);
}

vtkSmartPointer<vtkDataObject> readAny(const std::string& path, const std::string& extension) {
  if (extension == ".vtk") return readWith<vtkDataSetReader>(path);
  if (extension == ".ply") return readWith<vtkPLYReader>(path);
  if (extension == ".obj") return readWith<vtkOBJReader>(path);
  if (extension == ".stl") return readWith<vtkSTLReader>(path);
  if (extension == ".inp") return readWith<vtkAVSucdReader>(path);
  return readWith<vtkXMLGenericDataObjectReader>(path);
}

} // namespace

void kx::readByVtk(const std::string& path, const std::string& extension, KbMeshFile::Content& content) {
  if (const std::string fault = findFaultForVtk(path, extension); !fault.empty()) {
    content.error = "cannot be read: " + fault;
    return;
  }
  const Listening listening;
  const vtkSmartPointer<vtkDataObject> object = readAny(path, extension);
  if (!listening.heard().errors.empty()) {
    content.error = "cannot be read: " + listening.heard().errors.front();
    return;
  }
  for (const std::string& warning : listening.heard().warnings) {
    if (std::find(content.notes.begin(), content.notes.end(), warning) == content.notes.end())
      content.notes.push_back(warning);
  }
  const auto data = vtkDataSet::SafeDownCast(object);
  if (!data) {
    content.error = object ? std::string("holds a ") + object->GetClassName() + ", which is no mesh"
                           : std::string("cannot be read");
    return;
  }
  if (vtkUnstructuredGrid::SafeDownCast(data) || vtkPolyData::SafeDownCast(data))
    convertCells(*data, content);
  else
    convertGrid(*data, content);
}
