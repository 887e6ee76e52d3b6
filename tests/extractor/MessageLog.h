// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMessage.h>

#include <string>
#include <vector>

/// Collects the messages that are posted while it lives, each as "origin: text".
class MessageLog {
public:
  MessageLog() { KiMessage::setHandler(&MessageLog::add, this); }
  ~MessageLog() { KiMessage::setHandler(nullptr, nullptr); }
  MessageLog(const MessageLog&) = delete;
  MessageLog& operator=(const MessageLog&) = delete;
  std::vector<std::string> lines;

private:
  static void add(void* self, const char* origin, const char* text) {
    static_cast<MessageLog*>(self)->lines.push_back(std::string(origin) + ": " + text);
  }
};
