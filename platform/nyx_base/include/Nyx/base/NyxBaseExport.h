// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#ifdef NYX_BASE_BUILD
#define NYX_BASE_API __attribute__((visibility("default")))
#else
#define NYX_BASE_API
#endif
