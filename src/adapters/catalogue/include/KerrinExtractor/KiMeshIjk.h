// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMesh.h>
#include <KerrinExtractor/KiTopologyIjk.h>

/// A structured volume mesh: its cells are addressed by (i, j, k).
class KERRIN_EXTRACTOR_API KiMeshIjk : public virtual KiMesh {
public:
  /// Order in which a structured set keeps its values, named from the outermost to the innermost (fastest) index. It is
  /// a hint for walking order only: values are always addressed as (i, j, k).
  enum StorageLayout { KJI_LAYOUT, KIJ_LAYOUT, JKI_LAYOUT, JIK_LAYOUT, IKJ_LAYOUT, IJK_LAYOUT };

  virtual const KiTopologyIjk& getTopology() const = 0;
};
