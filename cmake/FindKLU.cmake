# Finds KLU of SuiteSparse (Debian: libsuitesparse-dev), which ships no CMake package of its own here.
# Defines the imported target KLU::KLU.
find_path(KLU_INCLUDE_DIR klu.h PATH_SUFFIXES suitesparse)
find_library(KLU_LIBRARY klu)
find_library(BTF_LIBRARY btf)
find_library(AMD_LIBRARY amd)
find_library(COLAMD_LIBRARY colamd)
find_library(SUITESPARSECONFIG_LIBRARY suitesparseconfig)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(KLU REQUIRED_VARS KLU_LIBRARY BTF_LIBRARY AMD_LIBRARY
  COLAMD_LIBRARY SUITESPARSECONFIG_LIBRARY KLU_INCLUDE_DIR)
if(KLU_FOUND AND NOT TARGET KLU::KLU)
  add_library(KLU::KLU INTERFACE IMPORTED)
  set_target_properties(KLU::KLU PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${KLU_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "${KLU_LIBRARY};${BTF_LIBRARY};${AMD_LIBRARY};${COLAMD_LIBRARY};${SUITESPARSECONFIG_LIBRARY}")
endif()
mark_as_advanced(KLU_INCLUDE_DIR KLU_LIBRARY BTF_LIBRARY AMD_LIBRARY COLAMD_LIBRARY SUITESPARSECONFIG_LIBRARY)
