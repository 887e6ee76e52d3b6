// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>

/// The process-wide counter by which data objects say that their content has changed.
class KERRIN_EXTRACTOR_API KxTimeStamp {
public:
  /// A value greater than every value returned before, from any thread. All bits set (`size_t(-1)`) is never returned:
  /// it stands for "no stamp".
  static std::size_t getTimeStamp();
};
