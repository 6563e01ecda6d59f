#include "mdb/InProcessReader.h"

#include "model/fileCheck.h"

namespace vellum {

bool InProcessReader::read(TOrbMDBFile &file, LoadObserver *observer)
{
    if (const OpenFailure failure = checkDatabaseFile(file.openPath()); failure != OpenFailure::None) {
        file.setOpenFailure(failure);
        return false;
    }
    if (loadFileInProcess(file, observer, m_options))
        return true;
    file.setOpenFailure(observer && observer->shouldCancel() ? OpenFailure::Cancelled : OpenFailure::Other);
    return false;
}

} // namespace vellum
