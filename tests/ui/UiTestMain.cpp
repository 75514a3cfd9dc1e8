// The UI tests run in one QApplication on the offscreen platform, with the user's folders and
// session bus pointed away from anything real.

#include <QtQml/qqmlextensionplugin.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QQuickStyle>
#include <QStandardPaths>
#include <cstdlib>
#include <filesystem>

Q_IMPORT_QML_PLUGIN(BrindletPlugin)

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);

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

  QApplication app(argc, argv);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(home);
  return result;
}
