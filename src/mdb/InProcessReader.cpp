#include "mdb/InProcessReader.h"

namespace vellum {

bool InProcessReader::read(TOrbMDBFile &file, LoadObserver *observer)
{
    LoadOptions options = m_options;
    options.password = password();
    return loadFileInProcess(file, observer, options);
}

} // namespace vellum
