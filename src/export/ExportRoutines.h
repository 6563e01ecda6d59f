#pragma once

// The export routine of each kind. To add a kind: declare its routine here and give it to the
// kind's row in export/exportRegistry.cpp (see the comment at the top of ExportJob.h).

#include "export/ExportFileType.h"
#include "export/ExportJob.h"

namespace vellum {

/// Kinds 0, 1 and 2: delimited text and XML, one file per table.
void exportTextFileThread(ExportJob &job);

/// Kind 4: SQL scripts in one of five dialects, one script or one per table.
void exportSQLThread(ExportJob &job);

/// Kind 5: one new SQLite database file (replacing an existing one) with every chosen table.
void exportSQLiteThread(ExportJob &job);

/// Kind 3: Excel 97-2003 workbooks (.xls, BIFF8), one per table or all tables in one.
void exportXLSThread(ExportJob &job);

/// Kind 6: Excel 2007 workbooks (.xlsx), one per table or all tables in one.
void exportXLSXThread(ExportJob &job);

/// Kinds 7 and 8: JSON (an array of row objects) and JSON Lines, one file per table.
void exportJSONThread(ExportJob &job);

/// The routine of a kind; nullptr when this build has none (nothing is started then).
ExportJob::Routine exportRoutineForType(ExportFileType kind);

/// True when the kind has a routine in this build.
inline bool isExportFileTypeAvailable(ExportFileType kind)
{
    return exportRoutineForType(kind) != nullptr;
}

} // namespace vellum
