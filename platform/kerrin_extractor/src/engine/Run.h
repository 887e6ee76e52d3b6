// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExtractorCallback.h>

#include <cstddef>
#include <functional>
#include <string>

namespace kx {

/// What an extraction changes, as `KiExtractorCallback::beginExtract` reports it.
struct Changes {
  bool geometry = false;
  bool topology = false;
  bool dataSet = false;
};

/// One extraction as its callback sees it: `beginExtract` at once, `endExtract` when the object dies, whatever happens
/// in between; and the loops, serial or on oneTBB. The order in which steps run is open; what they write must not
/// depend on it.
class Run {
public:
  Run(KiExtractorCallback* callback, bool parallel, const std::string& name, const Changes& changes,
      std::size_t numPhases);
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  /// One phase of `numSteps` independent steps. Phases beyond the number that was announced (an algorithm has handed
  /// over to a slower one) report steps only. Throws `KiCancellationException` when the callback asks to stop.
  void phase(const char* name, std::size_t numSteps, const std::function<void(std::size_t step)>& body);

private:
  void loop(std::size_t numSteps, const std::function<void(std::size_t)>& body) const;

  KiExtractorCallback* m_callback;
  bool m_parallel;
  std::size_t m_numPhases;
  std::size_t m_phase = 0;
};

} // namespace kx
