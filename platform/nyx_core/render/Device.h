// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/render/NxRenderStatistics.h>

#include "render/DrawRecord.h"

#include <string>

namespace nx::render {

/// Receives what a device has to say: the origin ("GlDevice::render") and one sentence.
using MessageFunction = void (*)(const char* origin, const std::string& text);

/// The one way into the graphics side: a frame of plain data in, a picture out. A device keeps the buffers of the
/// frames it has drawn and belongs to the thread that made it; several devices may live side by side.
class Device {
public:
  virtual ~Device() = default;
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  /// Draws a frame. A device with a context of its own writes the picture to \p pixels (RGBA, 8 bits each, top row
  /// first, size width * height * 4); one on the application's context draws into the bound framebuffer and leaves
  /// \p pixels alone. False, after a message, when nothing could be drawn.
  virtual bool render(const Frame& frame, std::vector<unsigned char>& pixels) = 0;

  virtual const NxRenderStatistics& frameStatistics() const = 0;
  virtual const NxRenderStatistics& totalStatistics() const = 0;

  /// The largest number of samples a pixel that the device draws with.
  virtual int maxSamples() const = 0;

protected:
  Device() = default;
};

/// A device with a head-less context of its own. \p platform is one of "surfaceless", "device" and "default", or
/// empty for the first of these that works. Null, after a message that names what failed, when there is none.
std::unique_ptr<Device> makeOffscreenDevice(const std::string& platform, MessageFunction message);

/// A device that draws with the context that is current at each call, always the same one. Null, after a message, when
/// none is current or it is older than OpenGL 4.1.
std::unique_ptr<Device> makeWindowDevice(MessageFunction message);

} // namespace nx::render
