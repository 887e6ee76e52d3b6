// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NxMessage.h>
#include <Nyx/base/NyxBaseExport.h>

/// Receives every message of the process. Derive and install one with setHandler to collect, translate or silence
/// messages; without one, a message is a line on the standard error stream.
class NYX_BASE_API NxMessageHandler {
public:
  virtual ~NxMessageHandler();

  /// Called on the thread that posts, by one thread at a time. It may post messages itself, which then go to the
  /// standard error stream.
  virtual void handle(const NxMessage& message) = 0;

  /// Installs a handler, or with null the standard error stream again, and returns the one before. The caller keeps
  /// the handler alive until it is replaced.
  static NxMessageHandler* setHandler(NxMessageHandler* handler);

  /// Hands a message to the installed handler.
  static void post(const NxMessage& message);
};
