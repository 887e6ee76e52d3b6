// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

/// Start and end of the extractor library.
class KERRIN_EXTRACTOR_API KiKerrin {
public:
  /// Call once before the first extractor is made; calls nest. `maxThreads` limits the threads that the library's
  /// parallel loops use together; 0 leaves the number to the scheduler.
  static void init(int maxThreads = 0);
  /// Ends one `init`; the last one lifts the limit again. Without an `init` it does nothing.
  static void finish();
  static bool isInitialized();
};
