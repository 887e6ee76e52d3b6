// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <string>

/// Progress and change reports of an extraction; all calls come from the thread that runs it.
class KERRIN_EXTRACTOR_API KiExtractorCallback {
public:
  virtual ~KiExtractorCallback();
  /// An extraction starts. The flags say what is new compared with the previous call on this extractor; all three are
  /// false, and there is no phase, when nothing has to be done.
  virtual void beginExtract(std::string name, bool geometryChanged, bool topologyChanged, bool dataSetChanged,
                            std::size_t numPhases) = 0;
  virtual void endExtract() = 0;
  /// A phase of `numSteps` steps starts; false asks to stop.
  virtual bool beginPhase(std::size_t phase, std::string name, std::size_t numSteps) = 0;
  virtual bool endPhase() = 0;
  /// `step` steps of the phase have been done; false asks to stop. Called about every `getEndStepCallPeriod()` seconds.
  virtual bool endStep(std::size_t step) = 0;
  virtual double getEndStepCallPeriod() = 0;
};
