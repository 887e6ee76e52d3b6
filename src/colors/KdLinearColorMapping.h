// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "colors/KdLinearColorMappingT.h"

#include <Nyx/base/NbColorRGBA.h>

/// The working object of `KoLinearColorMapping`.
class KdLinearColorMapping final : public KdLinearColorMappingT<double, NbColorRGBA, float> {};
