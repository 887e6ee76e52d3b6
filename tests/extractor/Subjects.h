// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extractor/ArrayMeshes.h"
#include "extractor/MessageLog.h"

#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// One mesh with its sets and an isosurface extractor, behind operations that are the same for every kind.
class Subject {
public:
  using Field = std::function<double(const KbVec3<double>&)>;
  virtual ~Subject() = default;

  struct Request {
    double isovalue = 0.0;
    bool perCell = false;
    bool filtered = false; ///< the filter refuses the cells whose flat index is odd
  };
  virtual const KeXSurfaceMeshUnstructured& extract(const Request& request) = 0;
  const KeXSurfaceMeshUnstructured& extract(double isovalue) { return extract(Request{isovalue, false, false}); }
  virtual const KeXDataSetI<double>* mapScalars(bool perCell) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* mapVectors(bool perCell) = 0;
  virtual KiBaseExtractor& extractor() = 0;
  /// A flat number of the input cell of an output cell.
  virtual std::size_t inputCell(std::size_t outputCell) const = 0;
  /// After a change of `values` or `cellValues`.
  virtual void touchValues() = 0;

  std::vector<float> coordinates;
  std::vector<float> values; ///< at the nodes
  std::vector<float> cellValues;
  std::vector<float> vectors; ///< the node positions, as a vector set
  std::vector<float> cellVectors;
  std::vector<KbVec3<double>> nodes; ///< what `values` were computed from, before rounding
  std::vector<std::uint8_t> dead;
  std::vector<std::vector<std::size_t>> cells; ///< the nodes of each
};

struct SubjectOptions {
  arrays::Counts counts{6, 5, 4};
  Subject::Field field;
  bool parallel = false;
  bool leftHanded = false; ///< mirrored in x
  std::size_t firstDeadCell = static_cast<std::size_t>(-1);
};

struct SubjectKind {
  const char* name;
  std::unique_ptr<Subject> (*make)(const SubjectOptions& options);
};

/// Every kind of volume mesh, array-backed and with virtual operations alone.
const std::vector<SubjectKind>& subjectKinds();

/// An output surface in plain form, with what laws ask of it.
struct Surface {
  std::vector<KbVec3<double>> vertices;
  std::vector<std::vector<std::size_t>> polygons;

  explicit Surface(const KeXSurfaceMeshUnstructured& mesh);
  double area() const;
  /// Directed edges that no polygon runs the other way: 0 for a closed and consistently oriented surface.
  std::size_t numOpenEdges(const std::function<bool(const KbVec3<double>&)>& isOnBoundary = {}) const;
  long eulerNumber() const;
  KbVec3<double> normal(std::size_t polygon) const;
  KbVec3<double> centre(std::size_t polygon) const;
};

/// All bytes of an output: indices, vertices, and input cells.
std::string bytesOf(const KeXSurfaceMeshUnstructured& mesh);
