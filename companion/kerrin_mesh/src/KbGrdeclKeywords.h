// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace kx {

/// What follows a keyword of a GRDECL file, and what is made of it.
enum class GrdeclKeyword {
  UNKNOWN, ///< what it is shows by what follows
  PROPERTY,
  BARE,    ///< nothing
  TITLE,   ///< a line of text
  RECORD,  ///< a record that is of no use here
  RECORDS, ///< records of no use here, closed by a slash of their own
  COUNTS,
  MAP_AXES,
  COORD,
  ZCORN,
  ACTNUM,
  INCLUDE,
  END_OF_FILE, ///< nothing, and what follows in the same file does not count
  END          ///< nothing, and nothing that follows counts
};

/// `keyword` in capitals.
GrdeclKeyword grdeclKeyword(std::string_view keyword);
std::string inCapitals(std::string_view word);

} // namespace kx
