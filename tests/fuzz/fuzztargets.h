#pragma once

// Entry functions shared by the libFuzzer executables and by the corpus replay of the
// normal build. Each aborts on a broken promise, as an escaping exception does.

#include <cstddef>
#include <cstdint>

// Bytes read in memory as a folder file and as mailbox.dat.
int FuzzReader(const uint8_t *data, size_t size);
// Bytes standing in a data folder, loaded (set aside if damaged), saved, loaded again.
int FuzzLoad(const uint8_t *data, size_t size);
