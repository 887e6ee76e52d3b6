// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExtractorCallback.h>
#include <Nyx/misc/NxRefCounter.h>

/// Passes an extraction's reports on to the application's callback, if there is one.
///
/// The application's answers to phases and steps are dropped: it watches an extraction, it cannot stop one.
class KdUserExtractorCallback final : public KiExtractorCallback, public NxRefCounter {
public:
  explicit KdUserExtractorCallback(KiExtractorCallback* user)
      : m_user(user) {}

  void beginExtract(std::string name, bool geometryChanged, bool topologyChanged, bool dataSetChanged,
                    std::size_t numPhases) override;
  void endExtract() override;
  bool beginPhase(std::size_t phase, std::string name, std::size_t numSteps) override;
  bool endPhase() override;
  bool endStep(std::size_t step) override;
  /// 1 second without an application's callback.
  double getEndStepCallPeriod() override;

private:
  ~KdUserExtractorCallback() override = default;

  KiExtractorCallback* m_user;
};
