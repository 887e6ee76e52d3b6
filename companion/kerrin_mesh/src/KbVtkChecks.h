// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace kx {

/// Why VTK must not see a file, without the name of the file; empty when it may.
///
/// VTK's readers of `.ply` and `.inp` files and of XML trust counts and indices: they end the process or never return
/// where a file has less than it promises. This looks for what can be told without reading values.
std::string findFaultForVtk(const std::string& path, const std::string& extension);

} // namespace kx
