#pragma once

#include <string>
#include <vector>

namespace vellum {

/// The system's list of recently opened documents as the browser uses it: the paths this
/// application noted, most recent first.
class RecentDocumentList {
public:
    virtual ~RecentDocumentList() = default;
    /// The noted paths, most recent first.
    virtual std::vector<std::string> paths() = 0;
    /// Notes a path as the most recent one.
    virtual void note(const std::string &path) = 0;
    /// Forgets every path this application noted.
    virtual void clear() = 0;
};

/// The freedesktop list `$XDG_DATA_HOME/recently-used.xbel` (default ~/.local/share), read and
/// written with GLib's bookmark file on every call, so that changes by other programs are seen.
/// Only entries registered by this application count; `clear` removes only its registrations
/// (and entries left with none). Failures to read or write leave the list as it was.
class RecentDocuments : public RecentDocumentList {
public:
    /// `applicationName` is the name the entries are registered under.
    explicit RecentDocuments(std::string applicationName = "Vellum");

    std::vector<std::string> paths() override;
    void note(const std::string &path) override;
    void clear() override;

    /// The file the list lives in (from XDG_DATA_HOME or HOME at each call).
    static std::string listFilePath();

private:
    std::string m_application;
};

} // namespace vellum
