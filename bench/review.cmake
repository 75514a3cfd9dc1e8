# A week's review over five years of tasks, against one bare pass over the same tasks.
add_executable(review_bench ReviewBench.cpp)
target_link_libraries(review_bench PRIVATE brindlet_bench_support)
