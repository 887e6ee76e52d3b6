// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kx {

/// The number that a whole word says; what is too small for the type is 0, and a Fortran exponent (1.0D+02) is one too.
/// Returns what is wrong with the word, to be said after it ("is no number"); empty when nothing is.
std::string_view parseGrdeclNumber(std::string_view word, double& value);
std::string_view parseGrdeclNumber(std::string_view word, float& value);
std::string_view parseGrdeclNumber(std::string_view word, std::uint8_t& value);

/// The number from 1 to `most` that a whole word says; 0 when it says none.
std::size_t parseGrdeclCount(std::string_view word, std::size_t most);

} // namespace kx
