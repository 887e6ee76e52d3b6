// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineTopologyExplicitI.h>
#include <KerrinExtractor/KiMeshUnstructuredI.h>

/// A line mesh of explicit cells: segments of two or three nodes.
class KERRIN_EXTRACTOR_API KiLineMeshUnstructured : public KiMeshUnstructuredI {
public:
  const KiLineTopologyExplicitI& getTopology() const override = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
