#pragma once

// The layer over libmdb: reading a file into the model. Only this unit and the loader process
// see libmdb's structures.

namespace vellum {

class TOrbMDBFile;
class LoadObserver;

/// Size of each libmdb value buffer: the bound on a field's text.
constexpr int kBindBufferSize = 200000;

/// Reads the whole file with libmdb in this process (catalog walk, kept tables with columns,
/// rows and indexes, relationships). False when libmdb cannot open the file or the observer
/// cancelled. Tables and relationships are left unsorted.
bool loadFileInProcess(TOrbMDBFile &file, LoadObserver *observer);

/// Reads the file in a vellum-loader helper process and receives the model over a pipe.
bool loadFileIsolated(TOrbMDBFile &file, LoadObserver *observer);

/// True when the vellum-loader helper is found beside the running executable.
bool isolatedLoaderAvailable();

} // namespace vellum
