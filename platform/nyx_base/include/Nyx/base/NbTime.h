// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

/// A point in time or a duration, in seconds.
class NYX_BASE_API NbTime {
public:
  constexpr NbTime() = default;
  constexpr explicit NbTime(double seconds)
      : m_seconds(seconds) {}

  /// Seconds since 1970-01-01 00:00 UTC.
  static NbTime getTimeOfDay();

  constexpr double getValue() const { return m_seconds; }

  friend constexpr NbTime operator+(NbTime a, NbTime b) { return NbTime(a.m_seconds + b.m_seconds); }
  friend constexpr NbTime operator-(NbTime a, NbTime b) { return NbTime(a.m_seconds - b.m_seconds); }
  friend constexpr bool operator<(NbTime a, NbTime b) { return a.m_seconds < b.m_seconds; }
  friend constexpr bool operator==(NbTime a, NbTime b) { return a.m_seconds == b.m_seconds; }
  friend constexpr bool operator!=(NbTime a, NbTime b) { return !(a == b); }

private:
  double m_seconds = 0.;
};
