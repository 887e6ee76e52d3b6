// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

/// A stop watch on the steady clock. It runs from its construction on.
class NYX_BASE_API NbElapsedTime {
public:
  NbElapsedTime() { reset(); }

  /// Starts again from 0.
  void reset();
  /// Seconds since construction or the last reset.
  double getElapsed() const;

private:
  double m_start = 0.;
};
