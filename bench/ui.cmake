# Startup, memory and idle cost of the desktop app against a bare Qt Quick window.
if(TARGET brindlet_ui)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Qml Quick QuickControls2 Widgets DBus Svg)
  add_executable(ui_startup_bench ${CMAKE_CURRENT_SOURCE_DIR}/UiStartupBench.cpp)
  target_link_libraries(ui_startup_bench PRIVATE brindlet_ui brindlet_uiplugin)
endif()
