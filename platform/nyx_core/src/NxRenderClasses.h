// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Registers the elements, nodes and actions of rendering, parents first.
void nxInitRenderClasses();
/// Takes them out again, children first.
void nxExitRenderClasses();
