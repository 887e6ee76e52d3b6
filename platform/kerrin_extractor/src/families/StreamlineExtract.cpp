// SPDX-License-Identifier: BSD-3-Clause
#include "StreamlineExtract.h"

#include <cmath>

namespace kx {

void StreamlineExtract::prepare(std::size_t numLines) {
  m_lines.resize(numLines);
  m_output.resize(numLines);
  for (std::size_t i = 0; i < numLines; ++i) {
    if (!m_lines[i]) m_lines[i] = std::make_unique<StreamLine>();
    m_lines[i]->clear();
    m_output[i] = m_lines[i].get();
  }
}

StreamParameters StreamlineExtract::checkedParameters(const Faults& faults) const {
  StreamParameters p = parameters;
  const auto check = [&](double& value, bool isGood, double otherwise, const char* text) {
    if (isGood) return;
    faults.post(text + std::to_string(value) + " is taken as " + std::to_string(otherwise));
    value = otherwise;
  };
  check(p.maxLifeTime, p.maxLifeTime >= 0.0, 0.0, "the max life time ");
  check(p.maxLength, p.maxLength >= 0.0, 0.0, "the max length ");
  check(p.minSpeed, p.minSpeed >= 0.0, 0.0, "the min speed ");
  check(p.stepLengthFactor, p.stepLengthFactor > 0.0 && std::isfinite(p.stepLengthFactor), 0.3,
        "the integration step length factor ");
  return p;
}

void StreamlineExtract::trace(Run& run, const SetView<KbVec3<double>>& vectors, bool isPerNode,
                              const std::vector<KbVec3<double>>& startPoints, const Faults& faults) {
  const StreamTracer tracer(m_locator, vectors, isPerNode, checkedParameters(faults));
  run.phase("trace", startPoints.size(), [&](std::size_t i) {
    tracer.trace(startPoints[i], *m_lines[i]);
    m_lines[i]->finish();
  });
}

void StreamlineExtract::commit() {
  InputAddress input;
  const Changes changes = m_locator.getChanges();
  if (!changes.geometry && !changes.topology) input = {m_locator.mesh().isStructured, m_locator.mesh().cellDims};
  for (const auto& line : m_lines)
    line->commit(input);
  m_outputStamp = KxTimeStamp::getTimeStamp();
  m_scalarSets.clear();
  m_vectorSets.clear();
}

template <class T, template <class> class Set>
StreamlineExtract::MappedSets<T> StreamlineExtract::mapSet(KiExtractorCallback* callback, const Set<T>& set) {
  constexpr bool isScalar = std::is_same_v<T, double>;
  const std::string origin = m_name + (isScalar ? "::extractScalarSet" : "::extractVec3Set");
  MappedSets<T> result(m_lines.size(), nullptr);
  if (!m_isValid) return result;
  const Changes meshChanges = m_locator.getChanges();
  if (meshChanges.geometry || meshChanges.topology) {
    Faults(origin).post("the mesh has changed since the last extraction");
    return result;
  }
  const auto cache = [this]() -> Cache<T>& {
    if constexpr (isScalar)
      return m_scalarSets;
    else
      return m_vectorSets;
  };
  const auto finish = [&](const Mapped<T>& mapped) {
    for (std::size_t i = 0; i < result.size(); ++i)
      result[i] = mapped.sets[i].get();
    return result;
  };
  const auto known = cache().find(&set);
  if (known != cache().end() && known->second.outputStamp == m_outputStamp &&
      known->second.inputStamp == set.getTimeStamp()) {
    const Run nothingToDo(callback, m_parallel, origin, {}, 0);
    return finish(known->second);
  }
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  std::string fault;
  Mapped<T>* mapped = nullptr;
  visitSet(m_locator.mesh(), set, fault, [&](const auto& values) {
    mapped = &cache()[&set];
    mapped->outputStamp = 0; // until it is done: an exception leaves nothing that looks valid
    mapped->sets.resize(m_lines.size());
    Run run(callback, m_parallel, origin, {false, false, true}, 1);
    run.phase("map", m_lines.size(), [&](std::size_t l) {
      const StreamLine& line = *m_lines[l];
      std::unique_ptr<ExtractedSet<T>>& output = mapped->sets[l];
      if (!output) output = std::make_unique<ExtractedSet<T>>();
      output->values().resize(isPerNode ? line.numPoints() : line.numSegments());
      CellHit hit;
      for (std::size_t i = 0; i < output->values().size(); ++i) {
        if (!isPerNode) {
          output->values()[i] = values(line.cell(i));
          continue;
        }
        if (hit.cell != line.cell(i)) m_locator.loadNodes(line.cell(i), hit);
        T sum(0.0);
        for (std::size_t n = 0; n < hit.numNodes(); ++n)
          if (const auto w = static_cast<double>(line.weights(i)[n]); w != 0.0) sum += values(hit.node(n)) * w;
        output->values()[i] = sum;
      }
    });
    for (const auto& output : mapped->sets)
      output->commit(set.getName(), set.getBinding());
    mapped->inputStamp = set.getTimeStamp();
    mapped->outputStamp = m_outputStamp;
  });
  if (!fault.empty()) Faults(origin).post(fault);
  return mapped ? finish(*mapped) : result;
}

// The combinations that the contract has.
using Vec3 = KbVec3<double>;
template StreamlineExtract::MappedSets<double> StreamlineExtract::mapSet(KiExtractorCallback*,
                                                                         const KiDataSetI<double>&);
template StreamlineExtract::MappedSets<double> StreamlineExtract::mapSet(KiExtractorCallback*,
                                                                         const KiDataSetIjk<double>&);
template StreamlineExtract::MappedSets<Vec3> StreamlineExtract::mapSet(KiExtractorCallback*, const KiDataSetI<Vec3>&);
template StreamlineExtract::MappedSets<Vec3> StreamlineExtract::mapSet(KiExtractorCallback*, const KiDataSetIjk<Vec3>&);

} // namespace kx
