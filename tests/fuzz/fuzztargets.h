#pragma once

// The fuzz targets' entry functions, shared by the libFuzzer executables
// and by the corpus replay that the normal build runs as a test. Each one
// aborts on a broken promise; an escaping exception aborts as well.

#include <cstddef>
#include <cstdint>

// Bytes taken as a folder file and as mailbox.dat by the reader and the
// two loaders, in memory.
int FuzzReader(const uint8_t *data, size_t size);
// Bytes standing in a data folder, through the whole load path with its
// setting aside, then saved and loaded again.
int FuzzLoad(const uint8_t *data, size_t size);
