// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>

#include <stdexcept>

/// Thrown by an operation of an interface that has no useful default and that the implementing class has left out.
class KERRIN_DATAMAPPING_API KiAbstractMethodError : public std::logic_error {
public:
  using std::logic_error::logic_error;
};
