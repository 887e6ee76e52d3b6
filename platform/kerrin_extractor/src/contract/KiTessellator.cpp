// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>

KiTessellator::~KiTessellator() = default;

namespace {

class BasicTessellator final : public KiTessellator {
public:
  BasicTessellator(double maxError, std::size_t maxDepth)
      : m_maxError(maxError)
      , m_maxDepth(maxDepth) {}
  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getMaxDepth() const override { return m_maxDepth; }
  bool isEdgeSplit(const KbVec3<double>& start, const KbVec3<double>& middle,
                   const KbVec3<double>& end) const override {
    const KbVec3<double> chord = end - start;
    const double squaredLength = chord.squaredLength();
    const double along = squaredLength > 0.0 ? std::clamp((middle - start).dot(chord) / squaredLength, 0.0, 1.0) : 0.0;
    const double squaredError = (start + chord * along - middle).squaredLength();
    const double squaredLimit = m_maxError > 0.0 ? m_maxError * m_maxError : 1e-4 * squaredLength;
    return squaredError > squaredLimit;
  }

private:
  double m_maxError;
  std::size_t m_maxDepth;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
};

} // namespace

KiTessellator* KiTessellator::getNewTessellatorBasic(double maxError, std::size_t maxDepth) {
  return new BasicTessellator(maxError, maxDepth);
}
