// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

/// Failures to get memory.
class NYX_BASE_API NxMemoryError {
public:
  NxMemoryError() = delete;

  /// Posts what memory was asked for, or the text of the exception that told of it.
  static void post(const char* what);
};
