// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>
#include <cmath>

KiTessellator::~KiTessellator() = default;

bool KiTessellator::isEdgeSplitByValue(double, double, double, double) const { return false; }

namespace {

class BasicTessellator final : public KiTessellator {
public:
  BasicTessellator(double maxError, std::size_t maxDepth, double relativeError)
      : m_maxError(maxError)
      , m_maxDepth(maxDepth)
      , m_relativeError(relativeError) {}
  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getMaxDepth() const override { return m_maxDepth; }
  bool isEdgeSplit(const KbVec3<double>& start, const KbVec3<double>& middle, const KbVec3<double>& end,
                   std::size_t level) const override {
    const KbVec3<double> chord = end - start;
    const double squaredLength = chord.squaredLength();
    const double along = squaredLength > 0.0 ? std::clamp((middle - start).dot(chord) / squaredLength, 0.0, 1.0) : 0.0;
    const double squaredError = (start + chord * along - middle).squaredLength();
    const double relative = std::ldexp(m_relativeError, static_cast<int>(level));
    const double squaredLimit = m_maxError > 0.0 ? m_maxError * m_maxError : relative * relative * squaredLength;
    return squaredError > squaredLimit;
  }
  bool isEdgeSplitByValue(double start, double middle, double end, double spread) const override {
    return std::abs(middle - 0.5 * (start + end)) > m_relativeError * spread;
  }

private:
  double m_maxError;
  std::size_t m_maxDepth;
  double m_relativeError;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
};

} // namespace

KiTessellator* KiTessellator::getNewTessellatorBasic(double maxError, std::size_t maxDepth, double relativeError) {
  return new BasicTessellator(maxError, maxDepth, relativeError);
}
