// SPDX-License-Identifier: BSD-3-Clause
#include "KbGrdeclKeywords.h"

#include <cctype>
#include <initializer_list>
#include <unordered_map>

namespace {

using Kind = kx::GrdeclKeyword;
using Table = std::unordered_map<std::string_view, Kind>;

Table makeTable() {
  Table table{{"TITLE", Kind::TITLE},      {"SPECGRID", Kind::COUNTS}, {"DIMENS", Kind::COUNTS},
              {"MAPAXES", Kind::MAP_AXES}, {"COORD", Kind::COORD},     {"ZCORN", Kind::ZCORN},
              {"ACTNUM", Kind::ACTNUM},    {"INCLUDE", Kind::INCLUDE}, {"ENDINC", Kind::END_OF_FILE},
              {"END", Kind::END}};
  const auto add = [&table](Kind kind, std::initializer_list<std::string_view> keywords) {
    for (const std::string_view keyword : keywords)
      table.emplace(keyword, kind);
  };
  add(Kind::BARE, {"RUNSPEC", "GRID",   "EDIT",   "PROPS",  "REGIONS", "SOLUTION", "SUMMARY", "SCHEDULE",
                   "ECHO",    "NOECHO", "INIT",   "METRIC", "FIELD",   "LAB",      "OIL",     "GAS",
                   "WATER",   "DISGAS", "VAPOIL", "ENDBOX", "ENDSKIP", "NEWTRAN",  "OLDTRAN", "OLDTRANR",
                   "NONNC",   "NOGGF",  "NOSIM",  "UNIFIN", "UNIFOUT", "FMTIN",    "FMTOUT"});
  add(Kind::RECORD, {"MAPUNITS", "GRIDUNIT", "GDORIENT", "COORDSYS", "PINCH", "MINPV", "MINPVFIL", "BOX", "RPTGRID",
                     "GRIDFILE", "START", "TABDIMS", "EQLDIMS", "REGDIMS", "WELLDIMS", "JFUNC", "MULTREGD"});
  add(Kind::RECORDS, {"FAULTS",   "MULTFLT",  "EQUALS",   "COPY",     "ADD",    "MULTIPLY", "MAXVALUE", "MINVALUE",
                      "OPERATE",  "NNC",      "EDITNNC",  "EQUALREG", "ADDREG", "MULTIREG", "COPYREG",  "OPERATER",
                      "MULTREGT", "MULTREGP", "AQUANCON", "AQUCON",   "THPRES", "COPYBOX"});
  add(Kind::PROPERTY,
      {"PORO",    "NTG",    "PERMX",  "PERMY",   "PERMZ",  "PERMXY", "PERMYZ",  "PERMZX",  "MULTX",   "MULTY",
       "MULTZ",   "MULTX-", "MULTY-", "MULTZ-",  "MULTPV", "PORV",   "TRANX",   "TRANY",   "TRANZ",   "SATNUM",
       "PVTNUM",  "EQLNUM", "FIPNUM", "ROCKNUM", "IMBNUM", "ENDNUM", "FLUXNUM", "MULTNUM", "OPERNUM", "PINCHNUM",
       "MISCNUM", "SWL",    "SWCR",   "SWU",     "SGL",    "SGCR",   "SGU",     "SOWCR",   "SOGCR",   "PRESSURE",
       "SWAT",    "SGAS",   "SOIL",   "RS",      "RV",     "DX",     "DY",      "DZ",      "DEPTH",   "FACIES"});
  return table;
}

} // namespace

kx::GrdeclKeyword kx::grdeclKeyword(std::string_view keyword) {
  static const Table table = makeTable();
  const auto found = table.find(keyword);
  return found != table.end() ? found->second : GrdeclKeyword::UNKNOWN;
}

std::string kx::inCapitals(std::string_view word) {
  std::string capitals(word);
  for (char& c : capitals)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return capitals;
}
