# One heartbeat of the application model on a large generated state file.
add_executable(appmodel_bench AppModelBench.cpp)
target_link_libraries(appmodel_bench PRIVATE brindlet_bench_support)
