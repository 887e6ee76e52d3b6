// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "peer/Measures.h"
#include "peer/PeerRunner.h"

#include <memory>

namespace peer {

/// Our side of a case that extracts a surface from a volume mesh: extractors over the mesh and its set, and over their
/// plain views. `Input` is one of VolumeInputs.h.
template <class Input, class Extractor>
class VolumeJob : public Job {
public:
  explicit VolumeJob(std::size_t numCells)
      : input(numCells) {}

  void runFirst(Access access) override {
    const bool hasArrays = access == Access::ARRAYS;
    m_first.reset();
    m_first.reset(Extractor::getNewInstance(hasArrays ? mesh() : input.plainMesh, true, nullptr));
    extract(*m_first, hasArrays ? set() : input.plainSet, 0);
  }
  void runNext(int turn) override { extract(next(), set(), turn); }
  bool runNextVirtual(int turn) override {
    if (!m_nextVirtual) m_nextVirtual.reset(Extractor::getNewInstance(input.plainMesh, true, nullptr));
    extract(*m_nextVirtual, input.plainSet, turn);
    return true;
  }
  double measureOurs() const override { return areaOf(first().getExtract()); }
  std::size_t numInputCells() const override { return numCellsOf(mesh()); }
  std::size_t numOutputCells() const override { return first().getExtract().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override { return copyOf(living().getExtract()); }

protected:
  using Mesh = typename Input::Mesh;
  using Set = typename Input::Set;

  /// One extraction; turn 0 is that of the comparison.
  virtual void extract(Extractor& extractor, const Set& set, int turn) const = 0;

  const Mesh& mesh() const { return input.mesh; }
  const Set& set() const { return input.set; }
  Extractor& first() const { return *m_first; }
  /// The living extractor, made when it is first asked for.
  Extractor& next() {
    if (!m_next) m_next.reset(Extractor::getNewInstance(mesh(), true, nullptr));
    return *m_next;
  }
  Extractor& living() const { return *m_next; }

  Input input;

private:
  std::unique_ptr<Extractor> m_first;
  std::unique_ptr<Extractor> m_next;
  std::unique_ptr<Extractor> m_nextVirtual;
};

} // namespace peer
