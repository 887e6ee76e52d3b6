// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <exception>

/// Thrown out of an extraction call when the callback has asked to stop. The extractor stays usable: its next call
/// starts from scratch.
class KERRIN_EXTRACTOR_API KiCancellationException : public std::exception {
public:
  KiCancellationException() = default;
  KiCancellationException(const KiCancellationException&) = default;
  KiCancellationException& operator=(const KiCancellationException&) = default;
  ~KiCancellationException() override;
  const char* what() const noexcept override;
};
