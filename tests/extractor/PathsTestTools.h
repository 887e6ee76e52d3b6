// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What the tests of probes and of streamlines share: filters by flat index, a recording callback, collected messages,
// reproducible points.
#include "extractor/MessageLog.h"

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiExtractorCallback.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace paths {

using Vec3 = KbVec3<double>;

/// Refuses the cells of a set, by flat index.
class RefuseI final : public KiCellFilterI {
public:
  explicit RefuseI(std::set<std::size_t> refused, std::size_t = 0, std::size_t = 0)
      : m_refused(std::move(refused)) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t cell) const override { return m_refused.count(cell) == 0; }

private:
  std::set<std::size_t> m_refused;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

class RefuseIj final : public KiCellFilterIj {
public:
  RefuseIj(std::set<std::size_t> refused, std::size_t numI, std::size_t = 0)
      : m_refused(std::move(refused))
      , m_numI(numI) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t i, std::size_t j) const override { return m_refused.count(i + m_numI * j) == 0; }

private:
  std::set<std::size_t> m_refused;
  std::size_t m_numI;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

class RefuseIjk final : public KiCellFilterIjk {
public:
  RefuseIjk(std::set<std::size_t> refused, std::size_t numI, std::size_t numJ)
      : m_refused(std::move(refused))
      , m_numI(numI)
      , m_numJ(numJ) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const override {
    return m_refused.count(i + m_numI * (j + m_numJ * k)) == 0;
  }

private:
  std::set<std::size_t> m_refused;
  std::size_t m_numI;
  std::size_t m_numJ;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

/// Writes down what an extractor reports; can ask it to stop.
class Recorder final : public KiExtractorCallback {
public:
  std::string log; ///< B and E for begin and end of an extraction, ( and ) for a phase
  bool geometryChanged = false;
  bool topologyChanged = false;
  bool dataSetChanged = false;
  std::size_t numPhases = 0;
  bool stop = false;

  void beginExtract(std::string, bool geometry, bool topology, bool dataSet, std::size_t phases) override {
    log += 'B';
    geometryChanged = geometry;
    topologyChanged = topology;
    dataSetChanged = dataSet;
    numPhases = phases;
  }
  void endExtract() override { log += 'E'; }
  bool beginPhase(std::size_t, std::string, std::size_t) override {
    log += '(';
    return !stop;
  }
  bool endPhase() override {
    log += ')';
    return true;
  }
  bool endStep(std::size_t) override { return !stop; }
  double getEndStepCallPeriod() override { return 0.0; }

  /// What a complete extraction with this many phases looks like.
  static std::string complete(std::size_t phases) {
    std::string text = "B";
    for (std::size_t i = 0; i < phases; ++i)
      text += "()";
    return text + "E";
  }
};

/// Reproducible points in a cube.
inline std::vector<Vec3> randomPoints(std::size_t count, double low, double high, std::uint64_t seed) {
  std::vector<Vec3> points(count);
  for (Vec3& p : points)
    for (std::size_t axis = 0; axis < 3; ++axis) {
      seed = seed * 6364136223846793005u + 1442695040888963407u;
      p[axis] = low + (high - low) * (static_cast<double>(seed >> 11) * 0x1p-53);
    }
  return points;
}

} // namespace paths
