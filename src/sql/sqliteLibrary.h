#pragma once

// The SQLite engine is not linked into the program: SQLCipher (SQLite with sqlite3_key and
// sqlite3_rekey) is opened at run time from <exe dir>/../lib/vellum/libsqlcipher.so and every
// SQLite call goes through the entry-point table below. The library state is process-wide:
// every socket that uses SQLite takes one hold on it and the library is closed when the last
// hold is dropped. Loading, unloading and the hold count are guarded by one mutex, so the
// export worker and the main thread may load at the same time.

#include <cstdint>
#include <functional>
#include <string>

// Opaque SQLite handles (the same tags as sqlite3.h, which is never included).
struct sqlite3;
struct sqlite3_stmt;

namespace vellum {

/// SQLite result codes and constants the driver needs.
enum : int {
    kSQLiteOK = 0,
    kSQLiteRow = 100,
    kSQLiteDone = 101,
    kSQLiteInteger = 1,
    kSQLiteFloat = 2,
    kSQLiteText = 3,
    kSQLiteBlob = 4,
    kSQLiteNull = 5,
    kSQLiteOpenReadWrite = 0x2,
    kSQLiteOpenCreate = 0x4,
};

// The 33 entry points, in the order in which they are looked up: X(name, return, parameters).
#define VELLUM_SQLITE_ENTRY_POINTS(X)                                                                                  \
    X(sqlite3_close, int, (sqlite3 *))                                                                                 \
    X(sqlite3_open_v2, int, (const char *, sqlite3 **, int, const char *))                                             \
    X(sqlite3_libversion, const char *, (void))                                                                        \
    X(sqlite3_exec, int, (sqlite3 *, const char *, int (*)(void *, int, char **, char **), void *, char **))           \
    X(sqlite3_prepare_v2, int, (sqlite3 *, const char *, int, sqlite3_stmt **, const char **))                         \
    X(sqlite3_step, int, (sqlite3_stmt *))                                                                             \
    X(sqlite3_errcode, int, (sqlite3 *))                                                                               \
    X(sqlite3_errmsg, const char *, (sqlite3 *))                                                                       \
    X(sqlite3_changes, int, (sqlite3 *))                                                                               \
    X(sqlite3_libversion_number, int, (void))                                                                          \
    X(sqlite3_interrupt, void, (sqlite3 *))                                                                            \
    X(sqlite3_last_insert_rowid, std::int64_t, (sqlite3 *))                                                            \
    X(sqlite3_finalize, int, (sqlite3_stmt *))                                                                         \
    X(sqlite3_column_count, int, (sqlite3_stmt *))                                                                     \
    X(sqlite3_column_database_name, const char *, (sqlite3_stmt *, int))                                               \
    X(sqlite3_column_decltype, const char *, (sqlite3_stmt *, int))                                                    \
    X(sqlite3_column_blob, const void *, (sqlite3_stmt *, int))                                                        \
    X(sqlite3_column_name, const char *, (sqlite3_stmt *, int))                                                        \
    X(sqlite3_column_text, const unsigned char *, (sqlite3_stmt *, int))                                               \
    X(sqlite3_column_type, int, (sqlite3_stmt *, int))                                                                 \
    X(sqlite3_table_column_metadata, int,                                                                              \
      (sqlite3 *, const char *, const char *, const char *, const char **, const char **, int *, int *, int *))        \
    X(sqlite3_column_bytes, int, (sqlite3_stmt *, int))                                                                \
    X(sqlite3_column_table_name, const char *, (sqlite3_stmt *, int))                                                  \
    X(sqlite3_column_int64, std::int64_t, (sqlite3_stmt *, int))                                                       \
    X(sqlite3_column_double, double, (sqlite3_stmt *, int))                                                            \
    X(sqlite3_bind_null, int, (sqlite3_stmt *, int))                                                                   \
    X(sqlite3_bind_int64, int, (sqlite3_stmt *, int, std::int64_t))                                                    \
    X(sqlite3_bind_double, int, (sqlite3_stmt *, int, double))                                                         \
    X(sqlite3_bind_text, int, (sqlite3_stmt *, int, const char *, int, void (*)(void *)))                              \
    X(sqlite3_bind_blob, int, (sqlite3_stmt *, int, const void *, int, void (*)(void *)))                              \
    X(sqlite3_reset, int, (sqlite3_stmt *))                                                                            \
    X(sqlite3_key, int, (sqlite3 *, const void *, int))                                                                \
    X(sqlite3_rekey, int, (sqlite3 *, const void *, int))

/// The table of SQLite function pointers, filled by `LoadSQLiteLibrary`. Valid only while the
/// caller holds the library (a successful `LoadSQLiteLibrary` not yet matched by an unload).
struct SQLiteAPI {
#define VELLUM_SQLITE_POINTER(name, ret, params) ret(*name) params = nullptr;
    VELLUM_SQLITE_ENTRY_POINTS(VELLUM_SQLITE_POINTER)
#undef VELLUM_SQLITE_POINTER
};

/// The process-wide entry-point table.
const SQLiteAPI &sqliteAPI();

/// Number of entry points the library must export.
inline constexpr int kSQLiteEntryPointCount = 33;

/// Takes one hold on the library, loading it on the first hold. True when it is loaded and
/// every entry point was found. A missing or unloadable file answers false silently; a library
/// that lacks entry points is closed again and reported through `AddFunctionChecking`.
[[nodiscard]] bool LoadSQLiteLibrary();
/// Drops one hold; the library is closed when the count falls to 0.
void UnloadSQLiteLibrary();
/// Whether the library is open.
bool IsSQLiteLibraryLoaded();
/// The number of holds on the library (for diagnostics and tests).
std::uint32_t SQLiteLibraryRetainCount();

/// The file `LoadSQLiteLibrary` opens: <exe dir>/../lib/vellum/libsqlcipher.so, or the path
/// set with `setSQLiteLibraryPath`.
std::string sqliteLibraryPath();
/// Replaces the computed library path (tests and embedders); an empty path restores it.
/// Takes effect at the next load of the library.
void setSQLiteLibraryPath(const std::string &path);

/// What the user is told about a library that lacks entry points.
struct LoadLibraryError {
    std::string title;   ///< "Load Library Error"
    std::string message; ///< the reason and the library path
    std::string details; ///< one line per missing entry point
};

/// Shows a `LoadLibraryError`. Called on the thread that loads the library (possibly the
/// export worker); a window must hand it to its main thread itself. Blocks while shown.
using LoadLibraryErrorHandler = std::function<void(const LoadLibraryError &)>;
/// Installs the handler (the GUI's error window); nullptr restores the default, which writes
/// the three texts to standard error.
void setLoadLibraryErrorHandler(LoadLibraryErrorHandler handler);

/// Reports a library whose entry points are incomplete: builds the "Load Library Error" texts
/// from the library path and the missing-function lines and hands them to the handler.
void AddFunctionChecking(const std::string &libraryPath, const std::string &missingFunctions);

/// The column affinity of a declared SQLite type name: 1 integer, 2 real, 3 text, 4 blob,
/// -1 unknown (also for a null name).
int SQLiteTypeIDFromTypeName(const char *typeName);

} // namespace vellum
