#include <pxr/export.h>

// A shared library needs a source of its own; the version lets a host see at run time what it has loaded.
extern "C" VESK_USD_API const char* vesk_usd_subset_version() { return "24.11-subset"; }
