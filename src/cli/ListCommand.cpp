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
    return kExitOk;
}

} // namespace

extern const Command kListCommand = {"list", "list the tables of a file with their row counts",
                                     "vellum-cli list FILE\n"
                                     "  Prints one line per table: the name, a tab, the number of rows.",
                                     runList};

} // namespace vellum::cli
