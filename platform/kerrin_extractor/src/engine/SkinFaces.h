// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceList.h"
#include "FaceTessellator.h"

#include <memory>

namespace kx {

/// Faces of volume cells with all their nodes, for an unstructured mesh. Faces that are collapsed to a line are left
/// out, and, with a fault noted, those with nodes that cannot be used. Mesh and faults must outlive the source.
FaceSource skinFaces(const MeshView& mesh, std::shared_ptr<const FaceList> faces, Faults& faults);

} // namespace kx
