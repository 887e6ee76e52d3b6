// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

namespace kx {

/// How many blocks of `size` things `count` of them fill, the last one maybe in part.
constexpr std::size_t numBlocksOf(std::size_t count, std::size_t size) { return (count + size - 1) / size; }

} // namespace kx
