// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what the library exports and applications import.
#if defined(_WIN32)
#if defined(KERRIN_DATAMAPPING_BUILD)
#define KERRIN_DATAMAPPING_API __declspec(dllexport)
#else
#define KERRIN_DATAMAPPING_API __declspec(dllimport)
#endif
#else
#define KERRIN_DATAMAPPING_API __attribute__((visibility("default")))
#endif
