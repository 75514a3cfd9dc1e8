# The costs of snapshots and transactions on a large generated state file.
add_executable(taskstore_bench TaskStoreBench.cpp)
target_link_libraries(taskstore_bench PRIVATE brindlet_bench_support)
