# cmake -DHELP=<file> -DHEADER=<file> -P: writes a header with the MD5 of the help file.
file(MD5 "${HELP}" text)
string(REGEX REPLACE "(..)" "0x\\1, " bytes "${text}")
file(WRITE "${HEADER}" "#pragma once

#include <array>
#include <cstdint>

namespace corvalence {

/// MD5 of the help file that was built with the program.
inline constexpr std::array<std::uint8_t, 16> kHelpDigest = {${bytes}};

}  // namespace corvalence
")
