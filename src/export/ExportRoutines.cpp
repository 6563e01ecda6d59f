#include "export/ExportRoutines.h"

namespace vellum {

namespace {

struct RoutineRow {
    ExportFileType kind;
    ExportJob::Routine routine;
};

// One row per kind that has a writer.
const RoutineRow kRoutines[] = {
    {ExportFileType::CSV, exportTextFileThread},
    {ExportFileType::TXT, exportTextFileThread},
    {ExportFileType::XML, exportTextFileThread},
    {ExportFileType::SQL, exportSQLThread},
    {ExportFileType::SQLite, exportSQLiteThread},
    {ExportFileType::XLS, exportXLSThread},
    {ExportFileType::XLSX, exportXLSXThread},
};

} // namespace

ExportJob::Routine exportRoutineForType(ExportFileType kind)
{
    for (const RoutineRow &row : kRoutines)
        if (row.kind == kind)
            return row.routine;
    return nullptr;
}

} // namespace vellum
