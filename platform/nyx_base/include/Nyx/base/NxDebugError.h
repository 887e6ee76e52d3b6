// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

/// Errors and warnings about the use of the libraries, for developers.
class NYX_BASE_API NxDebugError {
public:
  NxDebugError() = delete;

  /// Posts an error. `origin` is the class and operation that post; `format` and its arguments are those of printf.
  static void post(const char* origin, const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Posts a warning.
  static void postWarning(const char* origin, const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Posts a piece of information.
  static void postInfo(const char* origin, const char* format, ...) __attribute__((format(printf, 2, 3)));
};
