// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>

/// Start and end of the library. Between the two, every class of the library is registered with the toolkit.
///
///     KoKerrin::init();
///     ... build graphs, apply actions, let go of the last node ...
///     KoKerrin::finish();
///
/// To be called from one thread, and not while an action is at work.
class KERRIN_DATAMAPPING_API KoKerrin {
public:
  KoKerrin() = delete;

  /// Starts toolkit, cluster module and extractor library, which count their starts, and with the first call registers
  /// the classes. Calls nest. `maxThreads` goes to `KiKerrin::init`.
  static void init(int maxThreads);
  static void init() { init(0); }
  /// Ends one `init`; the last one takes the classes out again. Without an `init` it does nothing at all.
  static void finish();
  static bool isInitialized() { return s_initRefCount > 0; }

  static const char* getProductName();
  static const char* getVersion();

  /// How many `init` calls have not been ended yet.
  static int s_initRefCount;
};
