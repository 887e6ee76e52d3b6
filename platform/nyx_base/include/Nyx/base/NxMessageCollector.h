// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NxMessageHandler.h>
#include <Nyx/base/NyxBaseExport.h>

#include <vector>

/// Collects all messages between its construction and its destruction, and nothing reaches the handler that was
/// installed before. Scopes nest like brackets. For tests and for applications that show messages themselves.
class NYX_BASE_API NxMessageCollector : public NxMessageHandler {
public:
  NxMessageCollector();
  ~NxMessageCollector() override;
  NxMessageCollector(const NxMessageCollector&) = delete;
  NxMessageCollector& operator=(const NxMessageCollector&) = delete;

  void handle(const NxMessage& message) override;

  const std::vector<NxMessage>& getMessages() const { return m_messages; }
  /// How many messages have exactly this text.
  int count(const std::string& text) const;
  void clear() { m_messages.clear(); }

private:
  NxMessageHandler* m_former;
  std::vector<NxMessage> m_messages;
};
