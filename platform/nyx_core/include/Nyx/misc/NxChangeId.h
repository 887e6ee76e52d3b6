// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <cstdint>

/// The next number of the process-wide counter of changes, 1 at first. Fields and buffers take one at each change, so
/// that equal numbers mean the same content of the same object.
NYX_CORE_API uint64_t nxGetNextChangeId();
