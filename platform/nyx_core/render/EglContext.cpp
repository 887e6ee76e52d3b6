// SPDX-License-Identifier: BSD-3-Clause
#include "render/Context.h"

#include <epoxy/egl.h>

#include <cstdio>

namespace nx::render {

namespace {

EGLDisplay openPlatform(EGLenum platform, const char* extension, void* native) {
  if (!epoxy_has_egl_extension(EGL_NO_DISPLAY, extension)) return EGL_NO_DISPLAY;
  return eglGetPlatformDisplayEXT(platform, native, nullptr);
}

EGLDisplay openSurfaceless() {
  return openPlatform(EGL_PLATFORM_SURFACELESS_MESA, "EGL_MESA_platform_surfaceless", EGL_DEFAULT_DISPLAY);
}

EGLDisplay openFirstDevice() {
  if (!epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_device_enumeration")) return EGL_NO_DISPLAY;
  EGLDeviceEXT device = nullptr;
  EGLint count = 0;
  if (eglQueryDevicesEXT(1, &device, &count) != EGL_TRUE || count < 1) return EGL_NO_DISPLAY;
  return openPlatform(EGL_PLATFORM_DEVICE_EXT, "EGL_EXT_platform_device", device);
}

EGLDisplay openDefault() { return eglGetDisplay(EGL_DEFAULT_DISPLAY); }

struct Platform {
  const char* name;
  EGLDisplay (*open)();
};
constexpr Platform platforms[] = {
    {"surfaceless", openSurfaceless}, {"device", openFirstDevice}, {"default", openDefault}};

std::string eglErrorText() {
  char text[32];
  std::snprintf(text, sizeof text, "EGL error 0x%04x", static_cast<unsigned>(eglGetError()));
  return text;
}

class EglContext final : public Context {
public:
  /// Tries one platform; on failure the context stays unusable, and the step that failed is returned.
  std::string open(const Platform& platform) {
    m_display = platform.open();
    if (m_display == EGL_NO_DISPLAY) return "no display";
    EGLint major = 0, minor = 0;
    if (eglInitialize(m_display, &major, &minor) != EGL_TRUE) return "eglInitialize: " + eglErrorText();
    if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE) return "eglBindAPI(OpenGL): " + eglErrorText();

    const EGLint configAttributes[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                                       EGL_NONE};
    EGLConfig config = nullptr;
    EGLint numConfigs = 0;
    if (eglChooseConfig(m_display, configAttributes, &config, 1, &numConfigs) != EGL_TRUE || numConfigs < 1)
      return "eglChooseConfig: no configuration for OpenGL with pbuffers";
    const EGLint contextAttributes[] = {
        EGL_CONTEXT_MAJOR_VERSION,           4,       EGL_CONTEXT_MINOR_VERSION, 1, EGL_CONTEXT_OPENGL_PROFILE_MASK,
        EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
    m_context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, contextAttributes);
    if (m_context == EGL_NO_CONTEXT) return "eglCreateContext(OpenGL 4.1 core): " + eglErrorText();
    if (!epoxy_has_egl_extension(m_display, "EGL_KHR_surfaceless_context")) {
      const EGLint size[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
      m_surface = eglCreatePbufferSurface(m_display, config, size);
      if (m_surface == EGL_NO_SURFACE) return "eglCreatePbufferSurface: " + eglErrorText();
    }
    if (!enter()) return "eglMakeCurrent: " + eglErrorText();
    leave();
    return {};
  }

  // The display stays initialised: it is one for the process, and other contexts may live on it.
  ~EglContext() override {
    if (m_surface != EGL_NO_SURFACE) eglDestroySurface(m_display, m_surface);
    if (m_context != EGL_NO_CONTEXT) eglDestroyContext(m_display, m_context);
  }

  bool enter() override {
    // The API binding is part of what is brought back: an application may use OpenGL ES beside us.
    m_previousApi = eglQueryAPI();
    eglBindAPI(EGL_OPENGL_API);
    m_previousContext = eglGetCurrentContext();
    m_previousDisplay = eglGetCurrentDisplay();
    m_previousDraw = eglGetCurrentSurface(EGL_DRAW);
    m_previousRead = eglGetCurrentSurface(EGL_READ);
    return eglMakeCurrent(m_display, m_surface, m_surface, m_context) == EGL_TRUE;
  }

  void leave() override {
    if (m_previousContext != EGL_NO_CONTEXT)
      eglMakeCurrent(m_previousDisplay, m_previousDraw, m_previousRead, m_previousContext);
    else
      eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglBindAPI(m_previousApi);
  }

  bool isOffscreen() const override { return true; }

private:
  EGLDisplay m_display = EGL_NO_DISPLAY;
  EGLContext m_context = EGL_NO_CONTEXT;
  EGLSurface m_surface = EGL_NO_SURFACE;
  EGLenum m_previousApi = EGL_OPENGL_API;
  EGLContext m_previousContext = EGL_NO_CONTEXT;
  EGLDisplay m_previousDisplay = EGL_NO_DISPLAY;
  EGLSurface m_previousDraw = EGL_NO_SURFACE;
  EGLSurface m_previousRead = EGL_NO_SURFACE;
};

} // namespace

std::unique_ptr<Context> makeEglContext(const std::string& platform, MessageFunction message) {
  std::string tried;
  for (const Platform& candidate : platforms) {
    if (!platform.empty() && platform != candidate.name) continue;
    auto context = std::make_unique<EglContext>();
    const std::string failure = context->open(candidate);
    if (failure.empty()) return context;
    tried += (tried.empty() ? "" : "; ") + std::string(candidate.name) + ": " + failure;
  }
  if (tried.empty()) tried = "the platform \"" + platform + "\" is none of surfaceless, device, default";
  message("EglContext::open", "no OpenGL 4.1 core context could be made (" + tried + ")");
  return nullptr;
}

} // namespace nx::render
