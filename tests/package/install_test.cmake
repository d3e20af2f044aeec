function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nended with ${status}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# The program's output, which the examples keep beside them.
function(check_output program expected_file)
  run(${program})
  file(READ ${expected_file} expected)
  if(NOT output STREQUAL expected)
    message(FATAL_ERROR "${program} printed\n${output}\nand not\n${expected}")
  endif()
endfunction()

set(prefix ${scratch_dir}/prefix)
file(REMOVE_RECURSE ${scratch_dir})
run(${CMAKE_COMMAND} --install ${build_dir} --prefix ${prefix})

set(expected_files
  include/bcast/bcast.h include/bcast/embedded.h include/bcast/embedded.hpp include/bcast/services/column.h
  ${libdir}/libbcast.so ${libdir}/libbcast.so.1 ${libdir}/libbcast_embedded.so
  ${libdir}/cmake/bcast/bcastConfig.cmake ${libdir}/pkgconfig/bcast.pc
  ${docdir}/LICENSE)
if(with_tool)
  list(APPEND expected_files bin/bcast)
endif()
foreach(file ${expected_files})
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "${file} was not installed")
  endif()
endforeach()
if(with_tool)
  run(${prefix}/bin/bcast --version)
endif()

# The package has to work from wherever the tree is moved to.
file(RENAME ${prefix} ${scratch_dir}/moved)
set(prefix ${scratch_dir}/moved)

set(flags "")
if(sanitize)
  set(flags -fsanitize=${sanitize})
endif()

foreach(project examples link_order)
  run(${CMAKE_COMMAND} -S ${${project}_dir} -B ${scratch_dir}/${project} -D CMAKE_PREFIX_PATH=${prefix}
    -D CMAKE_C_COMPILER=${c_compiler} -D CMAKE_CXX_COMPILER=${cxx_compiler}
    -D CMAKE_C_FLAGS=${flags} -D CMAKE_CXX_FLAGS=${flags} -D source=${examples_dir}/cast_batch.c)
  run(${CMAKE_COMMAND} --build ${scratch_dir}/${project})
endforeach()

set(ENV{PKG_CONFIG_PATH} ${prefix}/${libdir}/pkgconfig)
run(${pkg_config} --cflags --libs bcast)
separate_arguments(package_flags UNIX_COMMAND "${output}")
set(rpath -Wl,-rpath,${prefix}/${libdir})
file(MAKE_DIRECTORY ${scratch_dir}/by_pkg_config)
run(${c_compiler} -std=c11 ${flags} ${examples_dir}/cast_batch.c -o ${scratch_dir}/by_pkg_config/cast_batch_c ${package_flags} ${rpath})
run(${cxx_compiler} -std=c++20 ${flags} ${examples_dir}/cast_batch.cpp -o ${scratch_dir}/by_pkg_config/cast_batch_cpp ${package_flags} ${rpath})

# All symbols bound at once, of which the loader complains if the services stand ahead of the casts.
set(ENV{LD_BIND_NOW} 1)
foreach(program casts_first services_first services_alone)
  check_output(${scratch_dir}/link_order/${program} ${examples_dir}/cast_batch_c.expected)
endforeach()
foreach(way examples by_pkg_config)
  check_output(${scratch_dir}/${way}/cast_batch_c ${examples_dir}/cast_batch_c.expected)
  check_output(${scratch_dir}/${way}/cast_batch_cpp ${examples_dir}/cast_batch_cpp.expected)
endforeach()
message(STATUS "installed, moved, built by find_package and pkg-config, and run")
