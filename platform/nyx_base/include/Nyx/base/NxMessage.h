// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

#include <string>

/// One message of the system to the user or developer.
struct NYX_BASE_API NxMessage {
  enum Severity {
    INFO,    ///< Trace output of a debugging switch.
    WARNING, ///< The input is odd; the operation went on.
    ERROR,   ///< The operation could not do what it was asked to.
  };

  Severity severity = INFO;
  const char* className = ""; ///< The class that was posted through, such as "NxDebugError".
  std::string origin;         ///< Class and operation that post, such as "KoMesh::setMesh"; may be empty.
  std::string text;
};
