// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <ostream>
#include <vector>

class KiGeometryI;

/// A cell of an explicit topology: a list of node ids, and where a point lies relative to them.
class KERRIN_EXTRACTOR_API KiCell {
public:
  virtual ~KiCell();
  virtual std::size_t getNumNodes() const = 0;
  /// The node id at a local index in [0, `getNumNodes()`).
  virtual std::size_t getNodeIndex(std::size_t localIndex) const = 0;
  /// The cell's size (its mean distance from the centre to the nodes), to compare cells of one mesh with each other.
  virtual double getRelativeSize(const KiGeometryI* geometry) const;
  /// Shape-function values of all nodes at a position in the cell's own (iso-parametric) coordinates; `weights` is
  /// resized to the number of nodes. They sum up to 1.
  virtual void getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const;
  /// The iso-parametric position of a node.
  virtual KbVec3<double> getIsoParametricCoord(std::size_t localIndex) const;
  /// The mean of the node positions.
  virtual KbVec3<double> getCenter(const KiGeometryI& geometry) const;
  /// Whether `point` lies in the cell; if so, `weights` receives the shape-function values there. Lines and surfaces
  /// take points that are off by 1e-4 of their size, for picked positions are rounded; a face that is not flat also
  /// takes those as far from its mean plane as its corners are, with the weights of a polygon.
  virtual bool isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                                 std::vector<double>& weights) const;
  friend KERRIN_EXTRACTOR_API std::ostream& operator<<(std::ostream& stream, const KiCell& cell);

protected:
  KiCell() = default;
  KiCell(const KiCell&) = default;
  KiCell& operator=(const KiCell&) = default;
  virtual void toStream(std::ostream& stream) const;
};
