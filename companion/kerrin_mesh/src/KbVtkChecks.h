// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace kx {

/// Why VTK must not see a file, without the name of the file; empty when it may.
///
/// VTK's readers trust counts and indices: they end the process or never return where a file has less than it promises.
/// This looks for what can be told without making a mesh.
std::string findFaultForVtk(const std::string& path, const std::string& extension);

/// The same for the texts of files of one kind; legacy ones in ASCII.
std::string findFaultInLegacy(std::string_view text);
std::string findFaultInPly(std::string_view text);
std::string findFaultInObj(std::string_view text);
std::string findFaultInUcd(std::string_view text);

} // namespace kx
