// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXGeometryExplicit.h>

#include <vector>

/// Several geometries one behind the other, as one. It does not own them.
class KERRIN_EXTRACTOR_API KeGeometryISet : public KeXGeometryExplicit {
public:
  KeGeometryISet();
  /// Appends the first `numNodes` nodes of a geometry.
  void add(const KiGeometryI& geometry, std::size_t numNodes);
  void clear();
  /// Makes room for so many geometries.
  void reserve(std::size_t numGeometries);
  /// Looks whether a geometry has changed; of extracted ones the number of nodes is read again.
  void update();

  /// Changes with the list, and when the stamp of one of the geometries does.
  std::size_t getTimeStamp() const override;
  std::size_t getNumNodes() const override;
  /// That of a single extracted geometry; null otherwise, since the nodes don't lie in one piece.
  const KiBuffer* getVertexBuffer() const override;
  KbVec3<double> getCoord(std::size_t node) const override;
  KbVec3<double> getMin() const override;
  KbVec3<double> getMax() const override;

private:
  struct Part {
    const KiGeometryI* geometry;
    const KeXGeometryExplicit* extracted; ///< the same, where it tells its number of nodes
    std::size_t end;                      ///< nodes of this part and all before it
    std::size_t timeStamp;
  };
  void refresh() const;

  mutable std::vector<Part> m_parts;
  mutable std::size_t m_timeStamp;
};
