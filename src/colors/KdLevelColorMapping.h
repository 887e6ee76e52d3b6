// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "colors/KdLevelColorMappingT.h"

#include <Nyx/base/NbColorRGBA.h>

/// The working object of `KoLevelColorMapping`.
class KdLevelColorMapping final : public KdLevelColorMappingT<double, NbColorRGBA> {};
