#pragma once

namespace vellum {

struct LoadLibraryError;

/// Shows the application's modal error window for a run-time library that lacks entry points:
/// the title, the message, and the missing entry points in a small read-only text below.
/// Runs until dismissed. Call on the GUI thread.
void showLoadLibraryError(const LoadLibraryError &error);

/// Makes the SQLite library loader report through `showLoadLibraryError`, from whichever
/// thread loads the library: a worker waits while the GUI thread shows the window.
void installLoadLibraryErrorWindow();

} // namespace vellum
