# LibreOffice with its development kit. Sets LibreOffice_FOUND and
#   LibreOffice_PROGRAM_DIR   the folder with soffice and the libraries, also at run time
#   LibreOffice_MISSING       what wasn't found
# and makes the target LibreOffice::uno with libraries, defines and the include directory of the kit.
# libreoffice_headers(TARGET TYPE...) has the build generate the C++ headers of these interfaces, and of all that they
# mention, for a target.

set(places $ENV{LIBREOFFICE_HOME} /usr/lib/libreoffice /usr/lib64/libreoffice /opt/libreoffice)
find_path(LibreOffice_HOME sdk/bin/cppumaker PATHS ${places} NO_DEFAULT_PATH)
find_path(LibreOffice_INCLUDE_DIR sal/types.h PATHS /usr/include/libreoffice
  PATH_SUFFIXES sdk/include HINTS ${LibreOffice_HOME} NO_DEFAULT_PATH)
set(LibreOffice_PROGRAM_DIR ${LibreOffice_HOME}/program)
set(LibreOffice_LIBRARIES)
set(LibreOffice_MISSING)
foreach(name sal cppu cppuhelpergcc3 salhelpergcc3)
  find_library(LibreOffice_${name} uno_${name} PATHS ${LibreOffice_HOME}/sdk/lib NO_DEFAULT_PATH)
  list(APPEND LibreOffice_LIBRARIES ${LibreOffice_${name}})
  if(NOT LibreOffice_${name})
    list(APPEND LibreOffice_MISSING "uno_${name}")
  endif()
endforeach()
if(NOT EXISTS ${LibreOffice_PROGRAM_DIR}/types/offapi.rdb)
  list(APPEND LibreOffice_MISSING "types/offapi.rdb")
endif()

include(FindPackageHandleStandardArgs)
if(LibreOffice_HOME AND LibreOffice_INCLUDE_DIR AND NOT LibreOffice_MISSING)
  set(LibreOffice_complete TRUE)
else()
  set(LibreOffice_complete FALSE)
endif()
find_package_handle_standard_args(LibreOffice REQUIRED_VARS LibreOffice_complete LibreOffice_HOME
  LibreOffice_INCLUDE_DIR)

if(LibreOffice_FOUND AND NOT TARGET LibreOffice::uno)
  add_library(LibreOffice::uno INTERFACE IMPORTED)
  target_include_directories(LibreOffice::uno INTERFACE ${LibreOffice_INCLUDE_DIR})
  target_compile_definitions(LibreOffice::uno INTERFACE LINUX UNX CPPU_ENV=gcc3)
  target_link_libraries(LibreOffice::uno INTERFACE ${LibreOffice_LIBRARIES})
endif()

function(libreoffice_headers target)
  list(TRANSFORM ARGN PREPEND -T OUTPUT_VARIABLE types)
  set(data ${LibreOffice_PROGRAM_DIR}/types.rdb ${LibreOffice_PROGRAM_DIR}/types/offapi.rdb)
  set(directory ${CMAKE_CURRENT_BINARY_DIR}/${target}-headers)
  set(stamp ${directory}/stamp)
  add_custom_command(OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}  # the generator doesn't make it
    COMMAND ${LibreOffice_HOME}/sdk/bin/cppumaker -C -O${directory} ${types} ${data}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${data} COMMENT "Generating the headers of ${target}" VERBATIM)
  target_sources(${target} PRIVATE ${stamp})
  target_include_directories(${target} SYSTEM PRIVATE ${directory})
endfunction()
