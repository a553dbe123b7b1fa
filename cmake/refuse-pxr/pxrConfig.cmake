# Stands in the way of a real OpenUSD in a project that uses a vesk on the embedded subset: an optional search finds
# nothing, and one that must find it stops with the reason.
set(pxr_FOUND FALSE)
set(pxr_NOT_FOUND_MESSAGE "This project uses a vesk that was built on its embedded subset of OpenUSD, and now looks for a real OpenUSD. One program can use only one of them: build vesk with VESK_USD_PROVIDER=installed on that OpenUSD, or do not find pxr here.")
