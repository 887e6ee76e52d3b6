// SPDX-License-Identifier: BSD-3-Clause
#include "extraction/KdUserExtractorCallback.h"

#include <utility>

void KdUserExtractorCallback::beginExtract(std::string name, bool geometryChanged, bool topologyChanged,
                                           bool dataSetChanged, std::size_t numPhases) {
  if (m_user) m_user->beginExtract(std::move(name), geometryChanged, topologyChanged, dataSetChanged, numPhases);
}

void KdUserExtractorCallback::endExtract() {
  if (m_user) m_user->endExtract();
}

bool KdUserExtractorCallback::beginPhase(std::size_t phase, std::string name, std::size_t numSteps) {
  if (m_user) m_user->beginPhase(phase, std::move(name), numSteps);
  return true;
}

bool KdUserExtractorCallback::endPhase() {
  if (m_user) m_user->endPhase();
  return true;
}

bool KdUserExtractorCallback::endStep(std::size_t step) {
  if (m_user) m_user->endStep(step);
  return true;
}

double KdUserExtractorCallback::getEndStepCallPeriod() { return m_user ? m_user->getEndStepCallPeriod() : 1.0; }
