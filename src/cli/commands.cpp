#include "cli/CliContext.h"

namespace vellum::cli {

const std::vector<const Command *> &allCommands()
{
    static const std::vector<const Command *> commands = {&kListCommand, &kSchemaCommand,  &kQueriesCommand,
                                                          &kRowsCommand, &kExtractCommand, &kExportCommand};
    return commands;
}

} // namespace vellum::cli
