#include "model/MdbLoader.h"

namespace vellum {

bool isolatedLoaderAvailable()
{
    return false;
}

bool loadFileIsolated(TOrbMDBFile &file, LoadObserver *observer)
{
    return loadFileInProcess(file, observer);
}

} // namespace vellum
