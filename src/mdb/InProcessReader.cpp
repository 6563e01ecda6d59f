#include "mdb/InProcessReader.h"

namespace vellum {

bool InProcessReader::read(TOrbMDBFile &file, LoadObserver *observer)
{
    return loadFileInProcess(file, observer, m_options);
}

} // namespace vellum
