#pragma once

// Rebuilding a saved query's SQL text from its stored definition: the rows Access keeps for it
// in the "MSysQueries" catalog table. Pure text work, so that it can be tested on rows built by
// hand; reading the rows from a file is the mdb layer's business.

#include "model/TOrbMDBQuery.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vellum {

/// One stored row of a query definition. Absent values (SQL NULL, or empty text) are nullopt.
struct QueryRow {
    /// What the row describes: 1 type, 2 parameter, 3 flags, 4 source database, 5 table,
    /// 6 column, 7 join, 8 WHERE, 9 GROUP BY, 10 HAVING, 11 ORDER BY (0 and 255 open and close
    /// the definition and carry nothing).
    int attribute = 0;
    std::optional<std::string> expression;
    std::optional<int> flag;
    std::optional<std::int32_t> extra;
    std::optional<std::string> name1;
    std::optional<std::string> name2;
};

/// A query's kind and SQL text; `error` says why the text could not be rebuilt (then `sql` is
/// empty), for example a join of an unknown kind.
struct RebuiltQuery {
    TOrbMDBQuery::Type type = TOrbMDBQuery::Type::Unknown;
    std::string sql;
    std::string error;
};

/// The kind and SQL text of a query from the flags of its catalog entry and its rows in stored
/// order. The text has the layout of Access's SQL view: one clause a line, clauses in Access's
/// order, ending in ";". Data-definition and pass-through queries give their stored text (without
/// the trailing NUL characters it is kept with).
RebuiltQuery rebuildQuery(std::uint32_t objectFlags, const std::vector<QueryRow> &rows);

/// `text` as a query writes a name: bracketed when it holds a character other than a letter, a
/// digit or "_" (and is not bracketed already); with `dotted`, each "."-separated part on its own.
std::string quotedQueryName(const std::string &text, bool dotted);

} // namespace vellum
