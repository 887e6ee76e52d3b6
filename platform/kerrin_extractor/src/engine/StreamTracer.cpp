// SPDX-License-Identifier: BSD-3-Clause
#include "StreamTracer.h"

#include <KerrinExtractor/KiStreamlineExtractor.h>

#include <algorithm>
#include <cmath>

namespace kx {
namespace {

using Vec3 = KbVec3<double>;

constexpr double ERROR_BOUND = 1e-6; ///< of the mesh's largest extent
// Steps of this part of the longest one are not made shorter for the sake of the error: vectors that are constant in
// each cell jump between cells whatever the step.
constexpr double SHORTEST_STEP_BY_NODES = 1e-4;
constexpr double SHORTEST_STEP_BY_CELLS = 1e-2;
constexpr double LAST_STEP = 1.0 / 64.0; ///< of the longest one: from here the way to the border is straight
// A line whose last steps lead nowhere, but for the error, has come to a point of rest.
constexpr std::size_t REST_STEPS = 16;
constexpr double REST_ERRORS = 4.0;   ///< times the error bound
constexpr double REST_IN_CELL = 0.01; ///< of the cell's diagonal
constexpr int NUM_BISECTIONS = 40;

constexpr std::size_t NUM_STAGES = 7;
// Row i tells how stage i + 1 is made of the stages before it; the last row is the solution of order 5 too.
constexpr double A[NUM_STAGES - 1][NUM_STAGES - 1] = {
    {1.0 / 5.0},
    {3.0 / 40.0, 9.0 / 40.0},
    {44.0 / 45.0, -56.0 / 15.0, 32.0 / 9.0},
    {19372.0 / 6561.0, -25360.0 / 2187.0, 64448.0 / 6561.0, -212.0 / 729.0},
    {9017.0 / 3168.0, -355.0 / 33.0, 46732.0 / 5247.0, 49.0 / 176.0, -5103.0 / 18656.0},
    {35.0 / 384.0, 0.0, 500.0 / 1113.0, 125.0 / 192.0, -2187.0 / 6784.0, 11.0 / 84.0}};
/// Order 5 minus order 4.
constexpr double E[NUM_STAGES] = {71.0 / 57600.0,      0.0,          -71.0 / 16695.0, 71.0 / 1920.0,
                                  -17253.0 / 339200.0, 22.0 / 525.0, -1.0 / 40.0};

double largestExtent(const Box& box) {
  if (box.isEmpty()) return 0.0;
  const Vec3 e = box.high - box.low;
  return std::max({e[0], e[1], e[2]});
}

} // namespace

struct StreamTracer::State {
  Vec3 point;
  Vec3 velocity;
  CellHit hit; ///< of the last sample
  std::size_t boxCell = CellHit::NO_CELL;
  Box box; ///< of boxCell
};

struct StreamTracer::Step {
  Vec3 point;
  Vec3 velocity; ///< at `point`
  double error;
  double length; ///< of the arc, to the same order as the path
};

StreamTracer::StreamTracer(const VolumeLocator& locator, const SetView<Vec3>& vectors, bool isPerNode,
                           const StreamParameters& parameters)
    : m_locator(locator)
    , m_vectors(vectors)
    , m_isPerNode(isPerNode)
    , m_parameters(parameters)
    , m_maxSteps(KiStreamlineExtractor::MAX_STEPS)
    , m_extent(largestExtent(locator.reach())) {
  if (parameters.maxStepNumber > 0) m_maxSteps = std::min(m_maxSteps, parameters.maxStepNumber);
}

bool StreamTracer::sample(const Vec3& point, State& state, Vec3& velocity) const {
  if (!m_locator.findNear(point, state.hit)) return false;
  velocity = std::visit(
      [&](const auto& vectors) { return m_isPerNode ? state.hit.interpolate(vectors) : vectors(state.hit.cell); },
      m_vectors);
  if (m_parameters.isBackward) velocity = -velocity;
  return std::isfinite(velocity.squaredLength());
}

bool StreamTracer::tryStep(State& state, double duration, Step& step) const {
  Vec3 k[NUM_STAGES];
  k[0] = state.velocity;
  for (std::size_t stage = 1; stage < NUM_STAGES; ++stage) {
    Vec3 sum;
    for (std::size_t i = 0; i < stage; ++i)
      sum += k[i] * A[stage - 1][i];
    step.point = state.point + sum * duration;
    if (!sample(step.point, state, k[stage])) return false;
  }
  Vec3 error;
  step.length = 0.0;
  for (std::size_t i = 0; i < NUM_STAGES; ++i) {
    error += k[i] * E[i];
    if (i + 1 < NUM_STAGES) step.length += A[NUM_STAGES - 2][i] * k[i].length() * duration;
  }
  step.error = error.length() * duration;
  step.velocity = k[NUM_STAGES - 1];
  return true;
}

double StreamTracer::longestStep(const State& state) const {
  double duration = std::numeric_limits<double>::infinity();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double extent = state.box.high[axis] - state.box.low[axis];
    const double speed = std::abs(state.velocity[axis]);
    if (extent > 0.0 && speed > 0.0) duration = std::min(duration, extent / speed);
  }
  // A velocity so small that the time overflows, or one across a flat cell: the step is then as long as the mesh.
  if (!std::isfinite(duration)) duration = m_extent / state.velocity.length();
  return m_parameters.stepLengthFactor * duration;
}

void StreamTracer::goToBorder(State& state, double duration, StreamLine& line) const {
  double inside = 0.0;
  double outside = duration;
  Vec3 velocity;
  for (int i = 0; i < NUM_BISECTIONS; ++i) {
    const double middle = 0.5 * (inside + outside);
    state.hit.cell = CellHit::NO_CELL; // searched afresh, so that the last answer below is that of the bisection
    (sample(state.point + state.velocity * middle, state, velocity) ? inside : outside) = middle;
  }
  if (inside == 0.0) return;
  const Vec3 last = state.point + state.velocity * inside;
  if (line.endsAt(last)) return;
  state.hit.cell = CellHit::NO_CELL;
  if (sample(last, state, velocity)) line.add(last, state.hit);
}

void StreamTracer::trace(const Vec3& start, StreamLine& line) const {
  State state;
  state.point = start;
  if (!sample(start, state, state.velocity)) return;
  line.add(start, state.hit);
  double time = 0.0;
  double length = 0.0;
  double proposed = std::numeric_limits<double>::infinity(); // by the error of the step before
  double cap = proposed;                                     // by the border
  bool hasJustLeft = false;
  const double shortest = m_isPerNode ? SHORTEST_STEP_BY_NODES : SHORTEST_STEP_BY_CELLS;
  const double bound = ERROR_BOUND * m_extent;
  Vec3 restPoint(std::numeric_limits<double>::infinity());
  for (std::size_t numSteps = 0; numSteps < m_maxSteps; ++numSteps) {
    const double speed = state.velocity.length();
    if (!(speed > 0.0) || speed < m_parameters.minSpeed) return;
    if (state.boxCell != state.hit.cell) {
      state.boxCell = state.hit.cell;
      state.box = m_locator.cellBox(state.boxCell);
    }
    if (numSteps % REST_STEPS == 0) {
      const double way = (state.point - restPoint).length();
      if (way <= std::min(REST_ERRORS * bound, REST_IN_CELL * state.box.diagonal())) return;
      restPoint = state.point;
    }
    const double longest = longestStep(state);
    double duration = std::min({longest, proposed, cap});
    bool isLast = false;
    Step step;
    for (;;) {
      isLast = m_parameters.maxLifeTime > 0.0 && duration >= m_parameters.maxLifeTime - time;
      if (isLast) duration = m_parameters.maxLifeTime - time;
      if (!tryStep(state, duration, step)) {
        if (duration <= LAST_STEP * longest) {
          goToBorder(state, duration, line);
          return;
        }
        duration *= 0.5;
        cap = duration;
        hasJustLeft = true;
        continue;
      }
      const double change = 0.9 * std::pow(bound / std::max(step.error, 1e-30 * bound), 0.2);
      if (step.error > bound && duration > shortest * longest) {
        duration = std::max(duration * std::clamp(change, 0.1, 0.9), shortest * longest);
        continue;
      }
      proposed = duration * std::clamp(change, 0.2, 5.0);
      break;
    }
    if (m_parameters.maxLength > 0.0 && length + step.length >= m_parameters.maxLength) {
      // Speed changes little in a step: scaling it twice meets the length.
      for (int i = 0; i < 2 && step.length > 0.0; ++i) {
        duration *= (m_parameters.maxLength - length) / step.length;
        if (!tryStep(state, duration, step)) return;
      }
      isLast = true;
    }
    if (!hasJustLeft) cap *= 2.0;
    hasJustLeft = false;
    state.point = step.point;
    state.velocity = step.velocity;
    time += duration;
    length += step.length;
    line.add(state.point, state.hit);
    if (isLast) return;
  }
}

} // namespace kx
