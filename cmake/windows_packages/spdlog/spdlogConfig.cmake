# The headers that scripts/windows_dependencies.sh laid into the prefix; the formatting library's are beside them.
if(NOT TARGET spdlog::spdlog)
  add_library(spdlog::spdlog INTERFACE IMPORTED)
  set_target_properties(spdlog::spdlog PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES ${CMAKE_CURRENT_LIST_DIR}/../../../include
    INTERFACE_COMPILE_DEFINITIONS "SPDLOG_FMT_EXTERNAL;FMT_HEADER_ONLY=1")
endif()
