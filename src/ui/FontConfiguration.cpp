#include "FontConfiguration.h"

#include <fontconfig/fontconfig.h>

#include <mutex>

namespace brindlet::ui {
namespace {

bool namesCacheFolder(FcConfig* config) {
  FcStrList* folders = FcConfigGetCacheDirs(config);
  if (folders == nullptr) return false;
  const bool named = FcStrListNext(folders) != nullptr;
  FcStrListDone(folders);
  return named;
}

// Loads what fontconfig's own start loads, less its reading of every optional configuration file
// for the description that listing tools show: a millisecond of the start-up. Where the system's
// configuration is missing, broken or names no cache folder, fontconfig's own start, with its
// fallbacks, is left to load it.
bool loadWithoutDescriptions() {
  FcConfig* config = FcConfigCreate();
  if (config == nullptr) return false;
  const bool loaded = FcConfigParseAndLoad(config, nullptr, FcTrue) == FcTrue &&
                      namesCacheFolder(config) && FcConfigBuildFonts(config) == FcTrue &&
                      FcConfigSetCurrent(config) == FcTrue;
  // The current configuration holds a reference of its own.
  FcConfigDestroy(config);
  return loaded;
}

}  // namespace

void readyFontConfiguration(TextLaidOut textLaidOut) {
  static std::once_flag loaded;
  std::call_once(loaded, [textLaidOut] {
    // Once text is laid out, a configuration made current would swap out the one Qt reads from.
    if (textLaidOut == TextLaidOut::notYet && loadWithoutDescriptions()) return;
    FcInit();
  });
}

}  // namespace brindlet::ui
