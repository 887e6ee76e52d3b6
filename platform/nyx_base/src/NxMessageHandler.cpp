// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NxMessageHandler.h>

#include <Nyx/base/NxDebug.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/base/NxError.h>
#include <Nyx/base/NxMemoryError.h>
#include <Nyx/base/NxMessageCollector.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

namespace {

struct HandlerSlot {
  std::recursive_mutex mutex;
  NxMessageHandler* handler = nullptr;
  bool isHandling = false;
};

HandlerSlot& slot() {
  static HandlerSlot& instance = *new HandlerSlot; // Messages may come from static destructors.
  return instance;
}

void writeToStandardError(const NxMessage& message) {
  if (message.severity == NxMessage::INFO) {
    std::fputs(message.text.c_str(), stderr);
    return;
  }
  const char* const kind = message.severity == NxMessage::WARNING ? "warning" : "error";
  const bool endsLine = !message.text.empty() && message.text.back() == '\n';
  std::fprintf(stderr, "%s %s%s%s: %s%s", message.className, kind, message.origin.empty() ? "" : " in ",
               message.origin.c_str(), message.text.c_str(), endsLine ? "" : "\n");
}

__attribute__((format(printf, 1, 0))) std::string format(const char* pattern, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(nullptr, 0, pattern, copy);
  va_end(copy);
  if (length < 0) return pattern;
  std::string text(static_cast<size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, pattern, arguments);
  return text;
}

__attribute__((format(printf, 4, 0))) void post(NxMessage::Severity severity, const char* className, const char* origin,
                                                const char* pattern, va_list arguments) {
  NxMessage message;
  message.severity = severity;
  message.className = className;
  message.origin = origin ? origin : "";
  message.text = format(pattern, arguments);
  NxMessageHandler::post(message);
}

} // namespace

NxMessageHandler::~NxMessageHandler() = default;

NxMessageHandler* NxMessageHandler::setHandler(NxMessageHandler* handler) {
  HandlerSlot& current = slot();
  const std::lock_guard<std::recursive_mutex> lock(current.mutex);
  return std::exchange(current.handler, handler);
}

void NxMessageHandler::post(const NxMessage& message) {
  HandlerSlot& current = slot();
  const std::lock_guard<std::recursive_mutex> lock(current.mutex);
  if (!current.handler || current.isHandling) {
    writeToStandardError(message);
    return;
  }
  current.isHandling = true;
  current.handler->handle(message);
  current.isHandling = false;
}

NxMessageCollector::NxMessageCollector()
    : m_former(NxMessageHandler::setHandler(this)) {}

NxMessageCollector::~NxMessageCollector() { NxMessageHandler::setHandler(m_former); }

void NxMessageCollector::handle(const NxMessage& message) { m_messages.push_back(message); }

int NxMessageCollector::count(const std::string& text) const {
  return static_cast<int>(std::count_if(m_messages.begin(), m_messages.end(),
                                        [&text](const NxMessage& message) { return message.text == text; }));
}

void NxError::post(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  ::post(NxMessage::ERROR, "NxError", nullptr, format, arguments);
  va_end(arguments);
}

void NxMemoryError::post(const char* what) {
  NxMessage message;
  message.severity = NxMessage::ERROR;
  message.className = "NxMemoryError";
  message.text = what ? what : "";
  NxMessageHandler::post(message);
}

void NxDebugError::post(const char* origin, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  ::post(NxMessage::ERROR, "NxDebugError", origin, format, arguments);
  va_end(arguments);
}

void NxDebugError::postWarning(const char* origin, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  ::post(NxMessage::WARNING, "NxDebugError", origin, format, arguments);
  va_end(arguments);
}

void NxDebugError::postInfo(const char* origin, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  ::post(NxMessage::INFO, "NxDebugError", origin, format, arguments);
  va_end(arguments);
}

void NxDebug::RTPrintf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  ::post(NxMessage::INFO, "NxDebug", nullptr, format, arguments);
  va_end(arguments);
}
