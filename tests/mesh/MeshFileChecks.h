// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbMeshFile.h>

namespace meshtest {

/// What contradicts itself in the result of reading a file; empty when all fits. A file without a mesh must have an
/// error of one line that names it; all nodes of cells must exist, and sets must have the sizes of the mesh.
std::string findContradiction(const KbMeshFile& file, const std::string& path);

} // namespace meshtest
