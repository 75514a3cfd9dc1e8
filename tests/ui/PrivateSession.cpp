#include "PrivateSession.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

// Under LeakSanitizer: what Qt's platform libraries keep for the life of the process on purpose
// (font caches, the GLib main context, the D-Bus threads). Leaks in Brindlet's code still count.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:libfontconfig.so\n"
         "leak:libglib-2.0.so\n"
         "leak:libdbus-1.so\n"
         "leak:libQt6Core.so\n"
         "leak:libQt6Gui.so\n"
         "leak:libQt6Qml.so\n"
         "leak:libQt6Quick.so\n"
         "leak:libQt6DBus.so\n"
         "leak:libQt6Widgets.so\n";
}

namespace brindlet::testing {

std::filesystem::path usePrivateSession() {
  const std::filesystem::path home =
      std::filesystem::temp_directory_path() / ("brindlet-ui-home-" + std::to_string(getpid()));
  std::filesystem::create_directories(home);
  std::filesystem::permissions(home, std::filesystem::perms::owner_all);
  setenv("HOME", home.c_str(), 1);
  setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
  setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
  setenv("XDG_CACHE_HOME", (home / "cache").c_str(), 1);
  setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/brindlet-test-bus", 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_QUICK_BACKEND", "software", 1);
  setenv("QSG_RENDER_LOOP", "basic", 1);
  setenv("TZ", "UTC", 1);
  setenv("LANG", "en_US.UTF-8", 1);
  return home;
}

}  // namespace brindlet::testing
