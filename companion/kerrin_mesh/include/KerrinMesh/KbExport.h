// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what the mesh library exports and everybody else imports.
#if defined(_WIN32)
#if defined(KERRIN_MESH_BUILD)
#define KERRIN_MESH_API __declspec(dllexport)
#else
#define KERRIN_MESH_API __declspec(dllimport)
#endif
#else
#define KERRIN_MESH_API __attribute__((visibility("default")))
#endif
