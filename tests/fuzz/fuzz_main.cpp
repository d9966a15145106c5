// One libFuzzer executable per entry function; FUZZ_ENTRY names it.

#include "fuzztargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    return FUZZ_ENTRY(data, size);
}
