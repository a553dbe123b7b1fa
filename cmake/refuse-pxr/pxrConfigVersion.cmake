# Whatever version is asked for, the answer is the same refusal.
set(PACKAGE_VERSION "0.0.0")
set(PACKAGE_VERSION_COMPATIBLE TRUE)
