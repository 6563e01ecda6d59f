#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "model/TOrbMDBFile.h"

namespace vellum::cli {

namespace {

int runList(CliContext &context)
{
    ArgParser parser({}, {});
    if (!parser.parse(context.args))
        return usageError(kListCommand, parser.error());
    if (parser.positionals().size() != 1)
        return usageError(kListCommand, "expected one FILE");
    auto file = openDatabase(context, parser.positionals()[0]);
    if (!file)
        return kExitFailure;
    for (const auto &table : file->tables())
        std::fprintf(context.out, "%s\t%zu\n", table->name().c_str(), table->rowCount());
    for (const auto &link : file->linkedTables())
        std::fprintf(context.out, "%s\t%s\n", link->name().c_str(), ("-> " + link->targetDescription()).c_str());
    return kExitOk;
}

} // namespace

extern const Command kListCommand = {"list", "list the tables of a file with their row counts",
                                     "vellum-cli list FILE\n"
                                     "  Prints one line per table: the name, a tab, the number of rows.\n"
                                     "  Linked tables follow the local ones, one line each: the name, a tab,\n"
                                     "  then \"-> DATABASE : TABLE\" for a table of another Access file\n"
                                     "  (the path as the database stores it) or \"-> ODBC TABLE\" for one\n"
                                     "  reached over ODBC.",
                                     runList};

} // namespace vellum::cli
