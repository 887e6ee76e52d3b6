// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NxError.h>

#include <string>

namespace nx::detail {

/// The way of the graphics side's messages to the user.
inline void postMessage(const char* origin, const std::string& text) { NxError::post("%s: %s", origin, text.c_str()); }

} // namespace nx::detail
