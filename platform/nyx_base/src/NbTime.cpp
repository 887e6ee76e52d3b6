// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbElapsedTime.h>
#include <Nyx/base/NbTime.h>

#include <chrono>

namespace {

double secondsOf(std::chrono::nanoseconds duration) { return std::chrono::duration<double>(duration).count(); }

} // namespace

NbTime NbTime::getTimeOfDay() { return NbTime(secondsOf(std::chrono::system_clock::now().time_since_epoch())); }

void NbElapsedTime::reset() { m_start = secondsOf(std::chrono::steady_clock::now().time_since_epoch()); }

double NbElapsedTime::getElapsed() const {
  return secondsOf(std::chrono::steady_clock::now().time_since_epoch()) - m_start;
}
