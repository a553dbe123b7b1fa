// One fuzzer of libFuzzer: the build names its target.
#include "targets.h"

#include <cstdint>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const auto run = [] {
        for (const vesk::fuzz::Target& target : vesk::fuzz::targets()) {
            if (std::strcmp(target.name, VESK_FUZZ_TARGET) == 0) {
                return target.run;
            }
        }
        __builtin_trap();
    }();
    run(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
