# The one table of icons: each symbol name that the screens use, and the Adwaita icon (from the
# Debian package adwaita-icon-theme, LGPL-3 or CC-BY-SA-3) that stands for it. The icons are
# copied into the build and bundled as resources under ":/icons/{symbol}.svg", and beside each
# one its shape drawn ahead at the sides in pixels that the screens use, at one and two device
# pixels per point, as ":/icons/masks/{side}/{symbol}".
set(BRINDLET_ICON_THEME /usr/share/icons/Adwaita/scalable)
set(BRINDLET_ICONS
  "sun.max.fill=status/weather-clear-symbolic.svg"
  "calendar=mimetypes/x-office-calendar-symbolic.svg"
  "chart.bar.fill=mimetypes/x-office-spreadsheet-symbolic.svg"
  "shield.fill=status/security-high-symbolic.svg"
  "shield=status/security-low-symbolic.svg"
  "iphone.and.arrow.forward=devices/phone-apple-iphone-symbolic.svg"
  "externaldrive.fill.badge.checkmark=devices/drive-harddisk-symbolic.svg"
  "timer=status/alarm-symbolic.svg"
  "arrow.right.circle.fill=actions/go-next-symbolic.svg"
  "clock=legacy/preferences-system-time-symbolic.svg"
  "stopwatch=status/task-due-symbolic.svg"
  "stopwatch.fill=status/task-due-symbolic.svg"
  "pause.fill=actions/media-playback-pause-symbolic.svg"
  "play.fill=actions/media-playback-start-symbolic.svg"
  "checkmark=actions/object-select-symbolic.svg"
  "checkmark.circle.fill=emblems/emblem-ok-symbolic.svg"
  "circle=ui/radio-symbolic.svg"
  "plus.circle.fill=actions/list-add-symbolic.svg"
  "line.3.horizontal=ui/list-drag-handle-symbolic.svg"
  "ellipsis=actions/view-more-horizontal-symbolic.svg"
  "bell.fill=legacy/preferences-system-notifications-symbolic.svg"
  "bell.slash=status/notifications-disabled-symbolic.svg"
  "arrow.right=actions/go-next-symbolic.svg"
  "chevron.left=actions/go-previous-symbolic.svg"
  "chevron.right=actions/go-next-symbolic.svg"
  "chevron.down=ui/pan-down-symbolic.svg"
  "sparkles=status/starred-symbolic.svg"
  "lock.fill=status/changes-prevent-symbolic.svg"
  "touchid=devices/auth-fingerprint-symbolic.svg"
  "trash=places/user-trash-symbolic.svg"
  "checkmark.shield.fill=status/security-high-symbolic.svg"
  "iphone=devices/phone-apple-iphone-symbolic.svg"
  "square.and.arrow.up=actions/document-save-symbolic.svg"
  "square.and.arrow.down=actions/document-open-symbolic.svg"
)

set(BRINDLET_ICON_SIDES 12 13 14 15 16 18 24 26 28 30 32 36)

# Draws the shapes ahead with the app's own drawing code.
qt_add_executable(brindlet_icon_masks tools/IconMasks.cpp IconShape.cpp IconShape.h)
target_include_directories(brindlet_icon_masks PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(brindlet_icon_masks PRIVATE Qt6::Gui)

function(brindlet_bundle_icons target)
  set(svgs)
  set(masks)
  foreach(entry IN LISTS BRINDLET_ICONS)
    string(REPLACE "=" ";" pair "${entry}")
    list(GET pair 0 symbol)
    list(GET pair 1 source)
    set(copy ${CMAKE_CURRENT_BINARY_DIR}/icons/${symbol}.svg)
    configure_file(${BRINDLET_ICON_THEME}/${source} ${copy} COPYONLY)
    list(APPEND svgs ${copy})
    foreach(side IN LISTS BRINDLET_ICON_SIDES)
      list(APPEND masks ${CMAKE_CURRENT_BINARY_DIR}/icons/masks/${side}/${symbol})
    endforeach()
  endforeach()
  add_custom_command(OUTPUT ${masks}
    COMMAND brindlet_icon_masks ${CMAKE_CURRENT_BINARY_DIR}/icons ${BRINDLET_ICON_SIDES} -- ${svgs}
    DEPENDS brindlet_icon_masks ${svgs}
    COMMENT "Drawing the bundled icons ahead"
    VERBATIM)
  # Stored as they are: each is a few kilobytes, and reading one then needs no decompressor.
  qt_add_resources(${target} brindlet_icons PREFIX / BASE ${CMAKE_CURRENT_BINARY_DIR}
    FILES ${svgs} ${masks} OPTIONS --no-compress)
endfunction()
