// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what the extractor library exports and everybody else imports.
#if defined(_WIN32)
#if defined(KERRIN_EXTRACTOR_BUILD)
#define KERRIN_EXTRACTOR_API __declspec(dllexport)
#else
#define KERRIN_EXTRACTOR_API __declspec(dllimport)
#endif
#else
#define KERRIN_EXTRACTOR_API __attribute__((visibility("default")))
#endif
