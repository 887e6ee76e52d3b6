// SPDX-License-Identifier: BSD-3-Clause
// Takes the place of the VTK based readers where VTK is not found.
#include "KbMeshFileContent.h"

void kx::readByVtk(const std::string&, const std::string& extension, KbMeshFile::Content& content) {
  content.error = "cannot be read: this library was built without VTK, which reads " + extension + " files";
}
