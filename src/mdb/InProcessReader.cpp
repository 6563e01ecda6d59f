#include "mdb/InProcessReader.h"

#include "model/fileCheck.h"

namespace vellum {

bool InProcessReader::read(TOrbMDBFile &file, LoadObserver *observer)
{
    if (const OpenFailure failure = checkDatabaseFile(file.openPath()); failure != OpenFailure::None) {
        file.setOpenFailure(failure);
        return false;
    }
    LoadOptions options = m_options;
    options.password = password();
    if (loadFileInProcess(file, observer, options))
        return true;
    // An encrypted file says itself why it failed (a password needed, or a wrong one).
    if (file.openFailure() == OpenFailure::None)
        file.setOpenFailure(observer && observer->shouldCancel() ? OpenFailure::Cancelled : OpenFailure::Other);
    return false;
}

} // namespace vellum
