// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

/// Trace output of debugging switches.
class NYX_BASE_API NxDebug {
public:
  NxDebug() = delete;

  /// Posts a formatted text as a message without origin. Line ends are part of the format; the standard error stream
  /// gets the text as it is.
  static void RTPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
};
