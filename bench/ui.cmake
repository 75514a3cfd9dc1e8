# Startup, memory and idle cost of the desktop app against a bare Qt Quick window.
if(TARGET brindlet_ui)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Qml QmlWorkerScript Quick)
  add_executable(ui_startup_bench ${CMAKE_CURRENT_SOURCE_DIR}/UiStartupBench.cpp)
  target_link_libraries(ui_startup_bench PRIVATE brindlet_qt_first brindlet_ui brindlet_uiplugin)
  # The yardstick is a program of its own, linking only Qt Quick, so that it starts as any bare
  # Qt Quick program does.
  add_executable(ui_yardstick_window ${CMAKE_CURRENT_SOURCE_DIR}/UiYardstickWindow.cpp)
  target_include_directories(ui_yardstick_window PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(ui_yardstick_window PRIVATE Qt6::Gui Qt6::Qml Qt6::Quick)
endif()
