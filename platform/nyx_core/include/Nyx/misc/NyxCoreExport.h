// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#ifdef NYX_CORE_BUILD
#define NYX_CORE_API __attribute__((visibility("default")))
#else
#define NYX_CORE_API
#endif
