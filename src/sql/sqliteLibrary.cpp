#include "sql/sqliteLibrary.h"

#include "util/format.h"
#include "util/localized.h"
#include "util/logging.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cctype>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <vector>

namespace vellum {
namespace {

std::mutex g_libraryMutex;
void *_sqlitelibhp = nullptr;
std::uint32_t _sqlitelibhpretaincount = 0;
SQLiteAPI g_api;
std::string g_libraryPathOverride;
LoadLibraryErrorHandler g_errorHandler;

/// The folder of the running executable, from /proc/self/exe.
std::string executableFolder()
{
    std::vector<char> buffer(4096);
    const ssize_t n = readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
    if (n <= 0)
        return std::string();
    return std::filesystem::path(std::string(buffer.data(), static_cast<std::size_t>(n))).parent_path().string();
}

/// Drops one hold; the caller holds g_libraryMutex.
void releaseHoldLocked()
{
    if (_sqlitelibhpretaincount > 0)
        --_sqlitelibhpretaincount;
    if (_sqlitelibhpretaincount == 0 && _sqlitelibhp) {
        dlclose(_sqlitelibhp);
        _sqlitelibhp = nullptr;
    }
}

/// Looks every entry point up in order; answers the "missing function" lines.
std::vector<std::string> lookUpEntryPoints(void *handle)
{
    std::vector<std::string> missing;
    const std::string label = localized("Missing function");
#define VELLUM_SQLITE_LOOKUP(name, ret, params)                                                                        \
    g_api.name = reinterpret_cast<ret(*) params>(dlsym(handle, #name));                                                \
    if (!g_api.name)                                                                                                   \
        missing.push_back(formatString("%s: %s", label.c_str(), #name));
    VELLUM_SQLITE_ENTRY_POINTS(VELLUM_SQLITE_LOOKUP)
#undef VELLUM_SQLITE_LOOKUP
    return missing;
}

} // namespace

const SQLiteAPI &sqliteAPI()
{
    return g_api;
}

std::string sqliteLibraryPath()
{
    {
        std::lock_guard<std::mutex> lock(g_libraryMutex);
        if (!g_libraryPathOverride.empty())
            return g_libraryPathOverride;
    }
    const std::string folder = executableFolder();
    if (folder.empty())
        return std::string();
    return (std::filesystem::path(folder).parent_path() / "lib" / "vellum" / "libsqlcipher.so").string();
}

void setSQLiteLibraryPath(const std::string &path)
{
    std::lock_guard<std::mutex> lock(g_libraryMutex);
    g_libraryPathOverride = path;
}

namespace {

/// Turns SQLite's memory statistics off before the library initialises itself: they are
/// never read here, and keeping them takes a process-wide lock on every allocation, which
/// costs about a fifth of an export's time. Optional: a library without sqlite3_config, or
/// one already initialised (the call then answers SQLITE_MISUSE), keeps them.
void disableMemoryStatistics(void *library)
{
    constexpr int kConfigMemStatus = 9; // SQLITE_CONFIG_MEMSTATUS
    if (auto config = reinterpret_cast<int (*)(int, ...)>(dlsym(library, "sqlite3_config")))
        (void)config(kConfigMemStatus, 0);
}

} // namespace

bool LoadSQLiteLibrary()
{
    const std::string path = sqliteLibraryPath();
    std::vector<std::string> missing;
    {
        std::lock_guard<std::mutex> lock(g_libraryMutex);
        if (_sqlitelibhp) {
            ++_sqlitelibhpretaincount;
            return true;
        }
        _sqlitelibhp = path.empty() ? nullptr : dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
        if (!_sqlitelibhp) {
            _sqlitelibhpretaincount = 0;
            return false;
        }
        ++_sqlitelibhpretaincount;
        missing = lookUpEntryPoints(_sqlitelibhp);
        if (missing.empty()) {
            disableMemoryStatistics(_sqlitelibhp);
            return true;
        }
        // An incomplete library is closed again before anyone else can take a hold on it.
        releaseHoldLocked();
    }
    AddFunctionChecking(path, join(missing, "\n"));
    return false;
}

void UnloadSQLiteLibrary()
{
    std::lock_guard<std::mutex> lock(g_libraryMutex);
    releaseHoldLocked();
}

bool IsSQLiteLibraryLoaded()
{
    std::lock_guard<std::mutex> lock(g_libraryMutex);
    return _sqlitelibhp != nullptr;
}

std::uint32_t SQLiteLibraryRetainCount()
{
    std::lock_guard<std::mutex> lock(g_libraryMutex);
    return _sqlitelibhpretaincount;
}

void setLoadLibraryErrorHandler(LoadLibraryErrorHandler handler)
{
    std::lock_guard<std::mutex> lock(g_libraryMutex);
    g_errorHandler = std::move(handler);
}

void AddFunctionChecking(const std::string &libraryPath, const std::string &missingFunctions)
{
    LoadLibraryError error;
    error.title = localized("Load Library Error");
    error.message = formatObjects("%@: '%@'", {localized("The SQLite library lacks required functions"), libraryPath});
    error.details = missingFunctions;

    LoadLibraryErrorHandler handler;
    {
        std::lock_guard<std::mutex> lock(g_libraryMutex);
        handler = g_errorHandler;
    }
    if (handler)
        handler(error);
    else
        C_LogError("%s\n%s\n%s", error.title.c_str(), error.message.c_str(), error.details.c_str());
}

int SQLiteTypeIDFromTypeName(const char *typeName)
{
    if (!typeName)
        return -1;
    std::string upper(typeName);
    for (char &c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const auto has = [&upper](const char *part) { return upper.find(part) != std::string::npos; };
    if (has("INT"))
        return 1;
    if (has("CHAR") || has("CLOB") || has("TEXT"))
        return 3;
    if (has("BLOB"))
        return 4;
    if (has("REAL") || has("FLOA") || has("DOUB"))
        return 2;
    return -1;
}

} // namespace vellum
