// SPDX-License-Identifier: BSD-3-Clause
#include "Run.h"

#include "ThreadLoop.h"

#include <KerrinExtractor/KiCancellationException.h>

#include <tbb/parallel_for.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace kx {

Run::Run(KiExtractorCallback* callback, bool parallel, const std::string& name, const Changes& changes,
         std::size_t numPhases)
    : m_callback(callback)
    , m_parallel(parallel)
    , m_numPhases(numPhases) {
  if (m_callback) m_callback->beginExtract(name, changes.geometry, changes.topology, changes.dataSet, numPhases);
}

Run::~Run() {
  if (m_callback) m_callback->endExtract();
}

void Run::loop(std::size_t numSteps, const std::function<void(std::size_t)>& body) const {
  if (!m_parallel || numSteps < 2) {
    for (std::size_t step = 0; step < numSteps; ++step)
      body(step);
    return;
  }
#if defined(__SANITIZE_THREAD__)
  ThreadLoop(numSteps, body).run();
#else
  tbb::parallel_for(std::size_t{0}, numSteps, body);
#endif
}

void Run::phase(const char* name, std::size_t numSteps, const std::function<void(std::size_t)>& body) {
  if (!m_callback) {
    loop(numSteps, body);
    return;
  }
  using Clock = std::chrono::steady_clock;
  const auto goOn = [](bool answer) {
    if (!answer) throw KiCancellationException();
  };
  const bool isReported = m_phase < m_numPhases;
  if (isReported) goOn(m_callback->beginPhase(m_phase, name, numSteps));
  ++m_phase;
  const std::chrono::duration<double> period(m_callback->getEndStepCallPeriod());
  const std::thread::id caller = std::this_thread::get_id();
  Clock::time_point lastCall = Clock::now();
  std::atomic<std::size_t> done{0};
  loop(numSteps, [&](std::size_t step) {
    body(step);
    const std::size_t count = done.fetch_add(1, std::memory_order_relaxed) + 1;
    // Only the thread that runs the extraction may call back; an exception from here stops the other threads.
    if (std::this_thread::get_id() != caller || Clock::now() - lastCall < period) return;
    lastCall = Clock::now();
    goOn(m_callback->endStep(count));
  });
  if (isReported) goOn(m_callback->endPhase());
}

} // namespace kx
