# voz_module(NAME SOURCES ... PUBLIC_HEADERS dir LINK targets PRIVATE_LINK targets PRIVATE_INCLUDE dirs)
#
# One of our shared libraries. Its objects are a target of their own (NAME_objects), so that tests reach
# what the library keeps to itself; the library leaves only the exported classes visible.
function(voz_module name)
  cmake_parse_arguments(ARG "" "PUBLIC_HEADERS" "SOURCES;LINK;PRIVATE_LINK;PRIVATE_INCLUDE" ${ARGN})

  if(NOT ARG_SOURCES)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/none.cpp "")
    set(ARG_SOURCES ${CMAKE_CURRENT_BINARY_DIR}/none.cpp)
  endif()
  add_library(${name}_objects OBJECT ${ARG_SOURCES})
  target_include_directories(${name}_objects PUBLIC ${ARG_PUBLIC_HEADERS} PRIVATE ${ARG_PRIVATE_INCLUDE})
  target_compile_definitions(${name}_objects PRIVATE ${name}_BUILDING)
  target_link_libraries(${name}_objects PUBLIC ${ARG_LINK} PRIVATE vozdravo_flags ${ARG_PRIVATE_LINK})

  add_library(${name} SHARED $<TARGET_OBJECTS:${name}_objects>)
  add_library(VOZDravo::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${ARG_PUBLIC_HEADERS}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/VOZDravo>)
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE $<BUILD_INTERFACE:vozdravo_flags> ${ARG_PRIVATE_LINK})
  target_compile_features(${name} PUBLIC cxx_std_17)
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "") # the file is VOZDravo.dll, as its callers look it up
  endif()
  set_property(GLOBAL APPEND PROPERTY VOZ_MODULES ${name})
  set_property(GLOBAL APPEND PROPERTY VOZ_PUBLIC_HEADER_DIRS ${ARG_PUBLIC_HEADERS})
endfunction()

# Programs start where they are built: the compiler's run-time libraries lie beside them.
if(WIN32 AND MINGW)
  foreach(runtime libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll zlib1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
      OUTPUT_VARIABLE runtime_file OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS "${runtime_file}")
      find_file(found_${runtime} ${runtime} PATH_SUFFIXES lib bin)
      set(runtime_file "${found_${runtime}}")
    endif()
    if(EXISTS "${runtime_file}")
      file(COPY ${runtime_file} DESTINATION ${CMAKE_BINARY_DIR}/bin FOLLOW_SYMLINK_CHAIN)
    else()
      message(STATUS "${runtime} was not found; programs need it on the PATH")
    endif()
  endforeach()
endif()
