#include "browser/RecentDocuments.h"

#include "util/logging.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace vellum {

namespace {

constexpr const char *kMimeType = "application/x-msaccess";

struct BookmarkFileDeleter {
    void operator()(GBookmarkFile *b) const { g_bookmark_file_free(b); }
};
using BookmarkFile = std::unique_ptr<GBookmarkFile, BookmarkFileDeleter>;

/// Loads the list; a missing file is an empty list. nullptr when the file exists but cannot be
/// read, so that it is never overwritten by a writer that did not understand it.
BookmarkFile load(const std::string &path)
{
    BookmarkFile file(g_bookmark_file_new());
    GError *error = nullptr;
    if (!g_bookmark_file_load_from_file(file.get(), path.c_str(), &error)) {
        const bool missing = g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT);
        g_error_free(error);
        if (!missing)
            return nullptr;
    }
    return file;
}

void save(GBookmarkFile *file, const std::string &path)
{
    gchar *folder = g_path_get_dirname(path.c_str());
    g_mkdir_with_parents(folder, 0700);
    g_free(folder);
    GError *error = nullptr;
    if (!g_bookmark_file_to_file(file, path.c_str(), &error)) {
        C_LogError("Cannot write the recent-documents list %s: %s", path.c_str(), error->message);
        g_error_free(error);
    }
}

struct Entry {
    std::string path;
    gint64 stamp;
    std::size_t position;
};

/// The entries registered by `application`, most recent first.
std::vector<Entry> registeredEntries(GBookmarkFile *file, const std::string &application)
{
    std::vector<Entry> out;
    gsize count = 0;
    gchar **uris = g_bookmark_file_get_uris(file, &count);
    for (gsize i = 0; i < count; ++i) {
        GDateTime *stamp = nullptr;
        if (!g_bookmark_file_get_application_info(file, uris[i], application.c_str(), nullptr, nullptr, &stamp,
                                                  nullptr))
            continue;
        gchar *path = g_filename_from_uri(uris[i], nullptr, nullptr);
        if (path) {
            out.push_back(
                {path, stamp ? g_date_time_to_unix(stamp) * 1000000 + g_date_time_get_microsecond(stamp) : 0, i});
            g_free(path);
        }
    }
    g_strfreev(uris);
    std::stable_sort(out.begin(), out.end(), [](const Entry &a, const Entry &b) {
        return a.stamp != b.stamp ? a.stamp > b.stamp : a.position > b.position;
    });
    return out;
}

} // namespace

RecentDocuments::RecentDocuments(std::string applicationName) : m_application(std::move(applicationName)) {}

std::string RecentDocuments::listFilePath()
{
    const char *dataHome = std::getenv("XDG_DATA_HOME");
    std::string folder;
    if (dataHome && *dataHome) {
        folder = dataHome;
    } else {
        const char *home = std::getenv("HOME");
        folder = std::string(home && *home ? home : g_get_home_dir()) + "/.local/share";
    }
    return folder + "/recently-used.xbel";
}

std::vector<std::string> RecentDocuments::paths()
{
    std::vector<std::string> out;
    BookmarkFile file = load(listFilePath());
    if (!file)
        return out;
    for (Entry &entry : registeredEntries(file.get(), m_application))
        out.push_back(std::move(entry.path));
    return out;
}

void RecentDocuments::note(const std::string &path)
{
    const std::string listPath = listFilePath();
    BookmarkFile file = load(listPath);
    if (!file)
        return;
    gchar *uri = g_filename_to_uri(path.c_str(), nullptr, nullptr);
    if (!uri)
        return;
    // The new stamp is later than every stamp of ours, so the order holds even when two notes
    // fall within the same microsecond.
    gint64 stamp = g_get_real_time();
    const std::vector<Entry> entries = registeredEntries(file.get(), m_application);
    if (!entries.empty())
        stamp = std::max(stamp, entries.front().stamp + 1);
    const std::string exec = "'" + m_application + "' %u";
    guint count = 0;
    g_bookmark_file_get_application_info(file.get(), uri, m_application.c_str(), nullptr, &count, nullptr, nullptr);
    GDateTime *when = g_date_time_new_from_unix_utc(stamp / 1000000);
    GDateTime *exact = g_date_time_add(when, stamp % 1000000);
    g_bookmark_file_set_application_info(file.get(), uri, m_application.c_str(), exec.c_str(),
                                         static_cast<int>(count + 1), exact, nullptr);
    g_date_time_unref(exact);
    g_date_time_unref(when);
    g_bookmark_file_set_mime_type(file.get(), uri, kMimeType);
    g_free(uri);
    save(file.get(), listPath);
}

void RecentDocuments::clear()
{
    const std::string listPath = listFilePath();
    BookmarkFile file = load(listPath);
    if (!file)
        return;
    gsize count = 0;
    gchar **uris = g_bookmark_file_get_uris(file.get(), &count);
    bool changed = false;
    for (gsize i = 0; i < count; ++i) {
        if (!g_bookmark_file_has_application(file.get(), uris[i], m_application.c_str(), nullptr))
            continue;
        g_bookmark_file_remove_application(file.get(), uris[i], m_application.c_str(), nullptr);
        gsize left = 0;
        gchar **apps = g_bookmark_file_get_applications(file.get(), uris[i], &left, nullptr);
        g_strfreev(apps);
        if (left == 0)
            g_bookmark_file_remove_item(file.get(), uris[i], nullptr);
        changed = true;
    }
    g_strfreev(uris);
    if (changed)
        save(file.get(), listPath);
}

} // namespace vellum
