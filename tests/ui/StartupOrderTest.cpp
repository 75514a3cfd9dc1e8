// The start-up warm-up's font configuration against the application object's own start: these
// tests make the application themselves, so they run in a process of their own.

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <filesystem>
#include <string>

#include "PrivateSession.h"
#include "StartupWarmUp.h"

namespace brindlet::testing {
namespace {

int argc = 1;
char programName[] = "ui_startup_tests";
char* argv[] = {programName, nullptr};

// The file of the font that `config` picks for `name`, such as "sans-serif:bold".
std::string fontFor(FcConfig* config, const char* name) {
  FcPattern* pattern = FcNameParse(reinterpret_cast<const FcChar8*>(name));
  FcConfigSubstitute(config, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* match = FcFontMatch(config, pattern, &result);
  FcPatternDestroy(pattern);
  if (match == nullptr) return {};
  FcChar8* file = nullptr;
  std::string path;
  if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) {
    path = reinterpret_cast<const char*>(file);
  }
  FcPatternDestroy(match);
  return path;
}

// The configuration files `config` lists, read or only described.
int listedConfigurationFiles(FcConfig* config) {
  FcConfigFileInfoIter files;
  FcConfigFileInfoIterInit(config, &files);
  int listed = 0;
  do {
    FcChar8* name = nullptr;
    FcChar8* description = nullptr;
    FcBool enabled = FcFalse;
    if (FcConfigFileInfoIterGet(config, &files, &name, &description, &enabled) == FcTrue) {
      ++listed;
      FcStrFree(name);
      FcStrFree(description);
    }
  } while (FcConfigFileInfoIterNext(config, &files) == FcTrue);
  return listed;
}

TEST(StartupOrderTest, FontsTheWarmUpLoadsBeforeAnyTextAreThoseFontconfigsOwnStartLoads) {
  ui::StartupWarmUp warmUp;
  warmUp.finish();
  FcConfig* loaded = FcConfigGetCurrent();
  FcConfig* fontconfigsOwn = FcInitLoadConfigAndFonts();
  ASSERT_NE(fontconfigsOwn, nullptr);

  EXPECT_EQ(FcConfigGetFonts(loaded, FcSetSystem)->nfont,
            FcConfigGetFonts(fontconfigsOwn, FcSetSystem)->nfont);
  for (const char* name : {"sans-serif", "sans-serif:bold", "serif", "monospace", "Cantarell"}) {
    EXPECT_EQ(fontFor(loaded, name), fontFor(fontconfigsOwn, name)) << name;
  }
  // Its own start also reads every optional file for its description, which the warm-up leaves.
  EXPECT_LT(listedConfigurationFiles(loaded), listedConfigurationFiles(fontconfigsOwn));
  FcConfigDestroy(fontconfigsOwn);
}

TEST(StartupOrderTest, AWarmUpMadeOnceTextIsLaidOutKeepsTheFontConfigurationInUse) {
  const QGuiApplication application(argc, argv);
  (void)QFontMetricsF(QGuiApplication::font()).horizontalAdvance(QStringLiteral("Brindlet"));
  FcConfig* inUse = FcConfigGetCurrent();

  ui::StartupWarmUp warmUp;
  warmUp.finish();
  EXPECT_EQ(FcConfigGetCurrent(), inUse);
}

}  // namespace
}  // namespace brindlet::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const std::filesystem::path home = brindlet::testing::usePrivateSession();
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(home);
  return result;
}
