#pragma once

#include <string>

namespace vellum {

/// Names a libmdb column type code with the names libmdb's default back end uses ("Boolean",
/// "Long Integer", "Memo/Hyperlink", …; codes above 0x10 as "Unknown_%04x"). Safe for every
/// code, including those on which libmdb's own lookup crashes (0x00, 0x0D, 0x0E).
std::string mdb_get_colbacktype_string_fromMdbType(int typeCode);

} // namespace vellum
