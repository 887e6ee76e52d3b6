// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

/// Errors that the user of an application should see.
class NYX_BASE_API NxError {
public:
  NxError() = delete;

  /// Posts a text; `format` and its arguments are those of printf.
  static void post(const char* format, ...) __attribute__((format(printf, 1, 2)));
};
