// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KiMessage.h>

#include <cstdio>
#include <mutex>

namespace {

void printToStandardError(void*, const char* origin, const char* text) {
  std::fprintf(stderr, "%s: %s\n", origin, text);
}

struct Route {
  std::mutex mutex;
  KiMessage::Handler handler = &printToStandardError;
  void* data = nullptr;
};

Route& route() {
  static Route instance;
  return instance;
}

} // namespace

void KiMessage::setHandler(Handler handler, void* data) {
  Route& r = route();
  const std::scoped_lock lock(r.mutex);
  r.handler = handler ? handler : &printToStandardError;
  r.data = handler ? data : nullptr;
}

void KiMessage::postWarning(const std::string& origin, const std::string& text) {
  Route& r = route();
  const std::scoped_lock lock(r.mutex);
  r.handler(r.data, origin.c_str(), text.c_str());
}
