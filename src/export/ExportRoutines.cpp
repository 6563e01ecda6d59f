#include "export/ExportRoutines.h"

#include "export/exportRegistry.h"

namespace vellum {

ExportJob::Routine exportRoutineForType(ExportFileType kind)
{
    const ExportKindInfo *info = exportKindInfo(kind);
    return info ? info->routine : nullptr;
}

} // namespace vellum
