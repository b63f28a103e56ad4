# pomvar_version_library(<name> STATIC|OBJECT <version>): the one translation unit that holds the
# version (src/wire/Version.cpp), compiled with the given one.
function(pomvar_version_library name kind version)
    add_library(${name} ${kind} ${PROJECT_SOURCE_DIR}/src/wire/Version.cpp)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_compile_definitions(${name} PRIVATE POMVAR_VERSION="${version}")
    target_link_libraries(${name} PRIVATE pomvar_build_options)
endfunction()

# pomvar_version_file(<libexec/pomvar folder> <version>): the version file of the programs
# installed there, which a running server compares with its own version.
function(pomvar_version_file folder version)
    file(CONFIGURE OUTPUT "${folder}/version" CONTENT "${version}\n")
endfunction()
