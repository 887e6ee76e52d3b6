// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#ifdef NYX_LODESTAR_BUILD
#define NYX_LODESTAR_API __attribute__((visibility("default")))
#else
#define NYX_LODESTAR_API
#endif
