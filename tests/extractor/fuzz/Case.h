// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Checks.h"
#include "World.h"

#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiExtractorCallback.h>
#include <KerrinExtractor/KiTessellator.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace fuzz {

/// Stops an extraction at a chosen question; checks the order of the calls.
class Stopper final : public KiExtractorCallback {
public:
  explicit Stopper(std::size_t stopAt)
      : m_stopAt(stopAt) {}
  std::string fault;
  bool hasStopped() const { return m_questions > m_stopAt; }

  void beginExtract(std::string, bool, bool, bool, std::size_t numPhases) override {
    check(!m_isOpen, "an extraction begins in another");
    m_isOpen = true;
    m_phase = 0;
    m_numPhases = numPhases;
  }
  void endExtract() override {
    check(m_isOpen, "an extraction ends that did not begin");
    m_isOpen = false;
    m_isInPhase = false;
  }
  bool beginPhase(std::size_t phase, std::string, std::size_t) override {
    check(m_isOpen && !m_isInPhase && phase == m_phase && phase < m_numPhases, "a phase begins at a wrong time");
    ++m_phase;
    m_isInPhase = true;
    return ask();
  }
  bool endPhase() override {
    check(m_isInPhase, "a phase ends that did not begin");
    m_isInPhase = false;
    return ask();
  }
  bool endStep(std::size_t) override { return ask(); }
  double getEndStepCallPeriod() override { return 0.0; }
  bool isClosed() const { return !m_isOpen; }

private:
  void check(bool isRight, const char* text) {
    if (!isRight && fault.empty()) fault = text;
  }
  bool ask() { return m_questions++ != m_stopAt; }
  std::size_t m_stopAt;
  std::size_t m_questions = 0;
  std::size_t m_phase = 0;
  std::size_t m_numPhases = 0;
  bool m_isOpen = false;
  bool m_isInPhase = false;
};

/// One random mesh with its sets and filters, and what was found wrong with the families on it.
class Case {
public:
  explicit Case(std::uint64_t seed)
      : random(seed)
      , world(random) {}

  Random random;
  World world;
  std::vector<std::string> faults;

  /// All families of the kinds of a dimension.
  void runVolumes();
  void runSurfaces();
  void runLines();

  /// A tessellator in every other case.
  KiTessellator* tessellator() {
    if (random.chance(0.5)) return nullptr;
    if (!m_tessellator)
      m_tessellator.reset(KiTessellator::getNewTessellatorBasic(0.0, 1 + random.below(3), random.between(0.001, 0.1)));
    return m_tessellator.get();
  }

  /// Puts a family through its paces. `make(isParallel)` yields a new extractor (owned), `extract(e, variant)` calls it
  /// with one of two sets of parameters and yields the output, `map(e, visit)` maps sets and calls `visit(mapped)`.
  template <class Make, class Extract, class Map>
  void run(const std::string& name, const Counts& cells, const Make& make, const Extract& extract, const Map& map) {
    const auto check = [&](const std::string& fault, const char* when) {
      const std::string offence = Offences::take();
      if (!fault.empty()) faults.push_back(name + ", " + when + ": " + fault);
      if (!offence.empty()) faults.push_back(name + ", " + when + ": " + offence);
    };
    const auto serial = make(false);
    const auto mapped = [&](auto& e, std::string& fault) {
      std::string bytes;
      map(e, [&](const auto& sets) {
        if (fault.empty()) fault = faultOfSet(sets, e.getExtract());
        bytes += bytesOfSet(sets) + '/';
      });
      return bytes;
    };
    std::string bytes[2];
    std::string sets[2];
    for (const std::size_t variant : {0u, 1u}) {
      const auto& output = extract(*serial, variant);
      check(faultOf(output, cells), "an extraction");
      bytes[variant] = bytesOf(output);
      std::string fault;
      sets[variant] = mapped(*serial, fault);
      check(fault, "sets");
      if (bytesOf(extract(*serial, variant)) != bytes[variant]) check("another output", "an equal call");
      fault.clear();
      if (mapped(*serial, fault) != sets[variant]) check("other values", "sets after an equal call");
      check(fault, "sets after an equal call");
    }
    const auto parallel = make(true);
    for (const std::size_t variant : {1u, 0u}) {
      if (bytesOf(extract(*parallel, variant)) != bytes[variant]) check("another output", "in parallel, the other way");
      std::string fault;
      if (mapped(*parallel, fault) != sets[variant]) check("other values", "sets in parallel");
      check(fault, "sets in parallel");
    }
    const auto stopped = make(random.chance(0.3));
    Stopper stopper(random.below(12));
    stopped->setExtractorCallback(stopper);
    try {
      extract(*stopped, 0);
    } catch (const KiCancellationException&) {
      if (!stopper.hasStopped()) check("it was not asked for", "a cancellation");
    }
    if (!stopper.isClosed()) check("it did not end", "a cancellation");
    check(stopper.fault, "calls");
    check(faultOf(stopped->getExtract(), cells), "after a cancellation");
    stopped->setExtractorCallback(nullptr);
    if (bytesOf(extract(*stopped, 0)) != bytes[0]) check("another output", "after a cancellation");
  }

private:
  std::unique_ptr<KiTessellator> m_tessellator;
};

/// The sets of a mesh: scalars and vectors of both bindings.
struct SetGroup {
  SetGroup(Random& random, const World& world, std::size_t numNodes, const Counts& nodeDims, std::size_t numCells,
           const Counts& cellDims)
      : nodeScalars(random, world, DataBinding::PER_NODE, numNodes, nodeDims)
      , cellScalars(random, world, DataBinding::PER_CELL, numCells, cellDims)
      , nodeVectors(random, world, DataBinding::PER_NODE, numNodes, nodeDims)
      , cellVectors(random, world, DataBinding::PER_CELL, numCells, cellDims) {}
  Set<double> nodeScalars;
  Set<double> cellScalars;
  Set<Vec3> nodeVectors;
  Set<Vec3> cellVectors;
};

/// One group for flat and one for structured addressing: an extractor knows a set by its object.
class Sets {
public:
  template <class... Arguments>
  explicit Sets(Random& random, const Arguments&... arguments)
      : m_flat(random, arguments...)
      , m_grid(random, arguments...) {}

  template <template <class> class Form>
  const SetGroup& in() const {
    return std::is_same_v<Form<double>, KiDataSetI<double>> ? m_flat : m_grid;
  }

  /// Maps all of them in each form that the extractor takes.
  template <class Extractor, class Visit>
  void map(Extractor& e, const Visit& visit) const {
    mapForm<KiDataSetI>(e, visit);
    mapForm<KiDataSetIj>(e, visit);
    mapForm<KiDataSetIjk>(e, visit);
  }

private:
  template <template <class> class Form, class Extractor, class Visit>
  void mapForm(Extractor& e, const Visit& visit) const {
    using Scalars = const Form<double>;
    using Vectors = const Form<Vec3>;
    if constexpr (requires(Scalars & s, Vectors & v) { e.extractScalarSet(s), e.extractVec3Set(v); }) {
      const SetGroup& sets = in<Form>();
      visit(e.extractScalarSet(static_cast<Scalars&>(sets.nodeScalars)));
      visit(e.extractScalarSet(static_cast<Scalars&>(sets.cellScalars)));
      visit(e.extractVec3Set(static_cast<Vectors&>(sets.nodeVectors)));
      visit(e.extractVec3Set(static_cast<Vectors&>(sets.cellVectors)));
    }
  }
  SetGroup m_flat;
  SetGroup m_grid;
};

} // namespace fuzz
