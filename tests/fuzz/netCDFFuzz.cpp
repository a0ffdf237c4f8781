// A classic NetCDF file in memory: its header is looked at, its variables are listed and read.

#include <tests/fuzz/ClimateSupport.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    lmx::tests::ReadClimateBytes(bytes, size);
    return 0;
}
