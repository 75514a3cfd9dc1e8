# Apply and remove on a hosts file of over 100,000 lines, against reading and writing the same
# file. Included from bench/CMakeLists.txt. The large real file stays outside the repository;
# without it the benchmark makes a file of 100,000 lines of its own.
add_executable(hosts_bench HostsBench.cpp)
target_link_libraries(hosts_bench PRIVATE brindlet_bench_support)
target_compile_definitions(hosts_bench PRIVATE
  BRINDLET_LARGE_HOSTS_FILE="${PROJECT_SOURCE_DIR}/../shared/testdata/hosts/large/unified-2024.hosts")
