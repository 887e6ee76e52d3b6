// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <string>

/// The route by which the extractor library reports bad input (it never throws for that, and never ends the process).
///
/// The default handler writes one line to standard error. The handler may be called from worker threads, one call at a
/// time.
class KERRIN_EXTRACTOR_API KiMessage {
public:
  /// `origin` is "Class::function", `text` names the value that was refused.
  using Handler = void (*)(void* data, const char* origin, const char* text);

  /// Replaces the handler; null restores the default.
  static void setHandler(Handler handler, void* data);
  static void postWarning(const std::string& origin, const std::string& text);
};
