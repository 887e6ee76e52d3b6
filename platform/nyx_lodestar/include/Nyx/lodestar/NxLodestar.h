// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/lodestar/NyxLodestarExport.h>

/// Start and end of the cluster module. Calls are counted and come from one thread at a time.
class NYX_LODESTAR_API NxLodestar {
public:
  NxLodestar() = delete;

  static void init();
  /// Ends one init; the last one forgets the modules that were announced. Without init it does nothing.
  static void finish();
  static bool isInitialized();
};
