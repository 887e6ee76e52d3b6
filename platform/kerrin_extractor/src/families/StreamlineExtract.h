// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/engine/ExtractedSet.h"
#include "src/engine/SetForm.h"
#include "src/engine/StreamTracer.h"

#include <KerrinExtractor/KiStreamlineExtractor.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kx {

/// The state behind every streamline extractor: its lines, what they were made from, and the sets mapped onto them.
class StreamlineExtract {
public:
  using Lines = std::vector<const KeXLineMeshCurvilinear*>;
  template <class T>
  using MappedSets = std::vector<const KeXDataSetI<T>*>;

  /// `name` is the extractor's class name, for messages and reports. The mesh must outlive this object.
  template <class Mesh>
  StreamlineExtract(const Mesh& mesh, bool parallel, std::string name)
      : m_locator(mesh)
      , m_parallel(parallel)
      , m_name(std::move(name)) {}

  StreamParameters parameters;

  template <class Set, class Filter>
  const Lines& extract(KiExtractorCallback* callback, const Set& vectors,
                       const std::vector<KbVec3<double>>& startPoints, const Filter* filter) {
    const Changes changes = m_locator.getChanges();
    Inputs inputs{&vectors,   vectors.getTimeStamp(), filter, filter ? filter->getTimeStamp() : 0, parameters,
                  startPoints};
    if (m_isValid && !changes.geometry && !changes.topology && inputs == m_inputs) {
      const Run nothingToDo(callback, m_parallel, m_name, {}, 0);
      return m_output;
    }
    const bool isNewSet = inputs.set != m_inputs.set || inputs.setStamp != m_inputs.setStamp;
    m_isValid = false;
    prepare(startPoints.size());
    Faults faults(m_name + "::extract");
    try {
      Run run(callback, m_parallel, m_name, {true, true, !m_hasRun || isNewSet}, m_locator.numPhases(changes) + 1);
      m_locator.update(run, changes, faults);
      m_locator.setFilter(filter);
      const bool isPerNode = vectors.getBinding() == DataBinding::PER_NODE;
      std::string fault;
      if (const auto view = viewFor(m_locator.mesh(), vectors, fault))
        trace(run, *view, isPerNode, startPoints, faults);
      else
        faults.post(!fault.empty() ? fault : "the set \"" + vectors.getName() + "\" " + WRONG_FORM);
    } catch (...) {
      prepare(startPoints.size());
      commit();
      throw;
    }
    commit();
    m_inputs = std::move(inputs);
    m_isValid = true;
    m_hasRun = true;
    faults.post();
    return m_output;
  }

  /// The set at the points of each line (`PER_NODE`) or in the cell that each segment begins in (`PER_CELL`). The same
  /// set with the same stamp gives the same objects. Null entries when the set does not suit.
  template <class T, template <class> class Set>
  MappedSets<T> mapSet(KiExtractorCallback* callback, const Set<T>& set);

  const Lines& output() const { return m_output; }

private:
  static constexpr const char* WRONG_FORM = "has a binding or a form that does not suit the mesh";

  /// All that the lines depend on, besides the mesh.
  struct Inputs {
    const void* set = nullptr; ///< in its form: an object may have several, of which one suits the mesh
    std::size_t setStamp = 0;
    const KiCellFilter* filter = nullptr;
    std::size_t filterStamp = 0;
    StreamParameters parameters;
    std::vector<KbVec3<double>> startPoints;
    friend bool operator==(const Inputs&, const Inputs&) = default;
  };
  template <class T>
  struct Mapped {
    std::vector<std::unique_ptr<ExtractedSet<T>>> sets;
    std::size_t inputStamp = 0;
    std::size_t outputStamp = 0;
  };
  template <class T>
  using Cache = std::map<const void*, Mapped<T>>; ///< by the address of a set's form

  /// Empty lines, one for each start point.
  void prepare(std::size_t numLines);
  void trace(Run& run, const SetView<KbVec3<double>>& vectors, bool isPerNode,
             const std::vector<KbVec3<double>>& startPoints, const Faults& faults);
  void commit();
  StreamParameters checkedParameters(const Faults& faults) const;

  VolumeLocator m_locator;
  bool m_parallel;
  std::string m_name;
  bool m_isValid = false; ///< whether the lines belong to m_inputs
  bool m_hasRun = false;
  Inputs m_inputs;
  std::vector<std::unique_ptr<StreamLine>> m_lines;
  Lines m_output;
  std::size_t m_outputStamp = 0;
  Cache<double> m_scalarSets;
  Cache<KbVec3<double>> m_vectorSets;
};

} // namespace kx
