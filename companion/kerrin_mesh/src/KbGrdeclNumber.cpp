// SPDX-License-Identifier: BSD-3-Clause
#include "KbGrdeclNumber.h"
#include "KbWords.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace {

using kx::isTooSmall;
using kx::withoutPlus;

template <class T>
std::errc parseWhole(std::string_view word, T& value) {
  const std::from_chars_result result = std::from_chars(word.data(), word.data() + word.size(), value);
  return result.ptr == word.data() + word.size() ? result.ec : std::errc::invalid_argument;
}

} // namespace

std::string_view kx::parseGrdeclNumber(std::string_view word, double& value) {
  word = withoutPlus(word);
  std::errc fault = parseWhole(word, value);
  if (fault == std::errc()) return {};
  std::string usual(word);
  if (const std::size_t exponent = usual.find_first_of("dD"); exponent != std::string::npos) {
    usual[exponent] = 'e';
    fault = parseWhole(usual, value);
  }
  if (fault == std::errc()) return {};
  if (fault != std::errc::result_out_of_range) return "is no number";
  if (!isTooSmall(usual)) return "is out of range";
  value = 0.0;
  return {};
}

std::string_view kx::parseGrdeclNumber(std::string_view word, float& value) {
  double number = 0.0;
  const std::string_view fault = parseGrdeclNumber(word, number);
  if (fault.empty() && std::isfinite(number) &&
      std::abs(number) > static_cast<double>(std::numeric_limits<float>::max()))
    return "is out of range";
  value = static_cast<float>(number);
  return fault;
}

std::string_view kx::parseGrdeclNumber(std::string_view word, std::uint8_t& value) {
  std::int64_t number = 0;
  const std::errc fault = parseWhole(withoutPlus(word), number);
  if (fault == std::errc::invalid_argument) {
    double real = 0.0;
    const std::string_view other = parseGrdeclNumber(word, real);
    return other.empty() ? "is no whole number" : other;
  }
  if (fault != std::errc() || number < 0 || number > 255) return "is not within 0 and 255";
  value = static_cast<std::uint8_t>(number);
  return {};
}

std::size_t kx::parseGrdeclCount(std::string_view word, std::size_t most) {
  std::size_t count = 0;
  return parseWhole(withoutPlus(word), count) == std::errc() && count <= most ? count : 0;
}
