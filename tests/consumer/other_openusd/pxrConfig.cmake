# Stands for another OpenUSD than the one that vesk is on: of another version, with one target of the usual names.
set(PXR_VERSION "2308")
if(NOT TARGET usdGeom)
    add_library(usdGeom INTERFACE IMPORTED)
    set_target_properties(usdGeom PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${CMAKE_CURRENT_LIST_DIR}/include")
endif()
