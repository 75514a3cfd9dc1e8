# The costs of snapshots and transactions on a large generated state file.
if(NOT TARGET benchmark::benchmark)
  find_package(benchmark REQUIRED)
endif()
add_executable(taskstore_bench TaskStoreBench.cpp StateFileGenerator.cpp)
target_link_libraries(taskstore_bench PRIVATE brindlet_core benchmark::benchmark)
