// The Data Safety screen: the daily copy, export through a save panel and restore through an open
// panel and a confirmation.

#include <gtest/gtest.h>

#include <QColor>
#include <QFileDialog>
#include <deque>
#include <filesystem>

#include "FilePanels.h"
#include "UiFixture.h"
#include "app/AppModel.h"

namespace brindlet::testing {
namespace {

/// File panels that answer from a script instead of asking anyone, and note what they were asked.
class ScriptedFilePanels : public ui::FilePanels {
 public:
  struct Request {
    QString suggestedName;
    QString filter;
  };

  /// The next answers, in order; an empty optional is a cancelled panel.
  std::deque<std::optional<QString>> answers;
  std::vector<Request> saveRequests;
  std::vector<Request> openRequests;

  std::optional<QString> chooseSaveLocation(const QString& suggestedName,
                                            const QString& filter) override {
    saveRequests.push_back({suggestedName, filter});
    return next();
  }
  std::optional<QString> chooseFileToOpen(const QString& filter) override {
    openRequests.push_back({QString(), filter});
    return next();
  }

  void choose(const std::filesystem::path& file) {
    answers.emplace_back(QString::fromStdString(file.string()));
  }
  void cancel() { answers.emplace_back(std::nullopt); }

 private:
  std::optional<QString> next() {
    EXPECT_FALSE(answers.empty()) << "a panel opened that the test didn't expect";
    if (answers.empty()) return std::nullopt;
    std::optional<QString> answer = answers.front();
    answers.pop_front();
    return answer;
  }
};

class DataSafetyViewTest : public UiTest {
 protected:
  DataSafetyViewTest() : previous_(ui::FilePanels::install(panels)) {}
  ~DataSafetyViewTest() override { ui::FilePanels::install(previous_); }

  void openScreen() { click(item("destination.Data Safety")); }
  [[nodiscard]] QString status() const { return item("backupStatus")->property("text").toString(); }
  [[nodiscard]] bool confirmationShown() const { return item("restoreQuestion") != nullptr; }
  [[nodiscard]] QString alertText() const {
    QQuickItem* message = item("errorAlertMessage");
    return message ? message->property("text").toString() : QString();
  }
  [[nodiscard]] std::filesystem::path dailyCopy(const char* name) const {
    return folders.dailyBackupFolder() / name;
  }

  std::shared_ptr<ScriptedFilePanels> panels = std::make_shared<ScriptedFilePanels>();

 private:
  std::shared_ptr<ui::FilePanels> previous_;
};

TEST_F(DataSafetyViewTest, ShowsTheStatusLineInGreenAndTheThreeCards) {
  launch();
  openScreen();
  EXPECT_TRUE(showsText("Data Safety"));
  EXPECT_TRUE(
      showsText("Your tasks and history stay on this Mac, with independent recovery copies."));
  EXPECT_EQ(status(), "Protected today · Brindlet-2026-11-21.json");
  EXPECT_EQ(item("backupStatus")->property("color").value<QColor>(), QColor("#2fa05a"));
  EXPECT_EQ(item("backupStatusIcon")->property("symbol").toString(), "checkmark.shield.fill");
  EXPECT_TRUE(
      showsText("A daily copy is stored in Documents/Brindlet Backups. Every edit also "
                "preserves the previous database version."));
  EXPECT_TRUE(showsText("Portable backup"));
  EXPECT_TRUE(showsText("Export a complete JSON backup you can keep on another drive."));
  EXPECT_TRUE(showsText("Restore"));
  EXPECT_TRUE(showsText(
      "Brindlet validates the backup and preserves your current database before restoring."));
  EXPECT_EQ(buttonsIn(item("dataSafetyView")),
            (std::vector<QString>{"Back Up Now", "Export Backup…", "Restore Backup…"}));
  EXPECT_EQ(item("restoreButton")->property("tint").value<QColor>(), QColor("#e0454b"));
  EXPECT_FALSE(confirmationShown());
  screenshot("datasafety-empty");
}

TEST_F(DataSafetyViewTest, BackUpNowTakesTheCopyOfANewDay) {
  launch();
  openScreen();
  clock->advance(24 * 3600);
  onModel([](AppModel& model) { model.heartbeat(); });
  EXPECT_FALSE(std::filesystem::exists(dailyCopy("Brindlet-2026-11-22.json")));

  clickButton("Back Up Now");
  EXPECT_EQ(status(), "Protected today · Brindlet-2026-11-22.json");
  EXPECT_EQ(readBytes(dailyCopy("Brindlet-2026-11-22.json")), readBytes(folders.stateFile()));
}

TEST_F(DataSafetyViewTest, AFailedDailyCopyTurnsTheStatusToNeedsAttentionStillInGreen) {
  launch();
  openScreen();
  clock->advance(24 * 3600);
  onModel([](AppModel& model) { model.heartbeat(); });
  std::filesystem::remove(folders.stateFile());

  clickButton("Back Up Now");
  EXPECT_EQ(status(), "Backup needs attention");
  EXPECT_EQ(item("backupStatus")->property("color").value<QColor>(), QColor("#2fa05a"));
  EXPECT_EQ(item("backupStatusIcon")->property("symbol").toString(), "checkmark.shield.fill");
  EXPECT_FALSE(alertText().isEmpty());
  EXPECT_FALSE(std::filesystem::exists(dailyCopy("Brindlet-2026-11-22.json")));
}

TEST_F(DataSafetyViewTest, ExportOffersBrindletBackupJsonAndWritesTheCopyWhereThePanelSays) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  openScreen();
  const std::filesystem::path destination = folder / "Drive" / "Brindlet Backup.json";
  panels->choose(destination);

  clickButton("Export Backup…");
  ASSERT_EQ(panels->saveRequests.size(), 1U);
  EXPECT_EQ(panels->saveRequests[0].suggestedName, "Brindlet Backup.json");
  EXPECT_EQ(panels->saveRequests[0].filter, "JSON (*.json)");
  EXPECT_EQ(readBytes(destination), readBytes(folders.stateFile()));
  EXPECT_EQ(status(), "Exported · Brindlet Backup.json");
  EXPECT_TRUE(alertText().isEmpty());
}

TEST_F(DataSafetyViewTest, CancellingTheSavePanelExportsNothing) {
  launch();
  openScreen();
  const QString before = status();
  panels->cancel();

  clickButton("Export Backup…");
  EXPECT_EQ(panels->saveRequests.size(), 1U);
  EXPECT_EQ(status(), before);
  EXPECT_FALSE(std::filesystem::exists(folder / "Brindlet Backup.json"));
  EXPECT_TRUE(alertText().isEmpty());
}

TEST_F(DataSafetyViewTest, ExportingOverAnExistingFileIsLeftToTheSavePanelsOwnQuestion) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  openScreen();
  const std::filesystem::path destination = folder / "Brindlet Backup.json";
  writeBytes(destination, "an older copy");
  panels->choose(destination);

  // The panel has already had the user agree to replace the file: the screen asks nothing more.
  clickButton("Export Backup…");
  EXPECT_FALSE(confirmationShown());
  EXPECT_TRUE(alertText().isEmpty());
  EXPECT_EQ(readBytes(destination), readBytes(folders.stateFile()));
  EXPECT_EQ(status(), "Exported · Brindlet Backup.json");
}

TEST_F(DataSafetyViewTest, TheDesktopSavePanelAsksBeforeReplacingAndOffersOnlyJson) {
  const std::unique_ptr<QFileDialog> save =
      ui::SystemFilePanels::makeSaveDialog("Brindlet Backup.json", "JSON (*.json)");
  EXPECT_EQ(save->acceptMode(), QFileDialog::AcceptSave);
  EXPECT_FALSE(save->testOption(QFileDialog::DontConfirmOverwrite));
  EXPECT_EQ(save->nameFilters(), QStringList{"JSON (*.json)"});
  EXPECT_EQ(save->defaultSuffix(), "json");
  ASSERT_EQ(save->selectedFiles().size(), 1);
  EXPECT_TRUE(save->selectedFiles().constFirst().endsWith("/Brindlet Backup.json"));
  EXPECT_FALSE(save->isVisible());

  const std::unique_ptr<QFileDialog> open = ui::SystemFilePanels::makeOpenDialog("JSON (*.json)");
  EXPECT_EQ(open->acceptMode(), QFileDialog::AcceptOpen);
  EXPECT_EQ(open->fileMode(), QFileDialog::ExistingFile);
  EXPECT_EQ(open->nameFilters(), QStringList{"JSON (*.json)"});
  EXPECT_FALSE(open->isVisible());
}

TEST_F(DataSafetyViewTest, CancellingTheOpenPanelShowsNoDialog) {
  launch();
  openScreen();
  panels->cancel();

  clickButton("Restore Backup…");
  ASSERT_EQ(panels->openRequests.size(), 1U);
  EXPECT_EQ(panels->openRequests[0].filter, "JSON (*.json)");
  EXPECT_FALSE(confirmationShown());
}

TEST_F(DataSafetyViewTest, CancellingTheConfirmationLeavesTheDataAndTheStatusAlone) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  openScreen();
  const std::filesystem::path backup = folder / "Brindlet Backup.json";
  panels->choose(backup);
  clickButton("Export Backup…");
  onModel([](AppModel& model) {
    model.setQuickTitle("Call Sam");
    model.addTask();
  });
  const std::string before = readBytes(folders.stateFile());
  const QString statusBefore = status();

  panels->choose(backup);
  clickButton("Restore Backup…");
  ASSERT_TRUE(confirmationShown());
  clickButton("Cancel");
  EXPECT_FALSE(confirmationShown());
  EXPECT_EQ(readBytes(folders.stateFile()), before);
  EXPECT_EQ(status(), statusBefore);
  EXPECT_EQ(stored().tasks.size(), 2U);
}

TEST_F(DataSafetyViewTest, EscapeDismissesTheConfirmationAndForgetsTheChosenFile) {
  launch();
  openScreen();
  const std::filesystem::path backup = folder / "Brindlet Backup.json";
  panels->choose(backup);
  clickButton("Export Backup…");
  const std::string before = readBytes(folders.stateFile());

  panels->choose(backup);
  clickButton("Restore Backup…");
  ASSERT_TRUE(confirmationShown());
  pressKey(Qt::Key_Escape);
  EXPECT_FALSE(confirmationShown());
  EXPECT_EQ(readBytes(folders.stateFile()), before);
  EXPECT_EQ(status(), "Exported · Brindlet Backup.json");

  // Nothing of the dismissed choice is left to restore: a cancelled panel brings no question.
  panels->cancel();
  clickButton("Restore Backup…");
  EXPECT_FALSE(confirmationShown());
}

TEST_F(DataSafetyViewTest, LeavingTheScreenForgetsTheChosenFile) {
  launch();
  openScreen();
  const std::filesystem::path backup = folder / "Brindlet Backup.json";
  panels->choose(backup);
  clickButton("Export Backup…");
  panels->choose(backup);
  clickButton("Restore Backup…");
  ASSERT_TRUE(confirmationShown());

  dashboard->setDestination(0);
  settle();
  EXPECT_FALSE(confirmationShown());
  openScreen();
  EXPECT_FALSE(confirmationShown());
  EXPECT_EQ(status(), "Exported · Brindlet Backup.json");
}

TEST_F(DataSafetyViewTest, ExportThenRestoreBringsTheExportedPlanBackOnEveryScreen) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  const std::filesystem::path backup = folder / "Drive" / "Brindlet Backup.json";
  openScreen();
  panels->choose(backup);
  clickButton("Export Backup…");
  EXPECT_EQ(status(), "Exported · Brindlet Backup.json");

  click(item("destination.Today"));
  click(item("quickAddField"));
  type("Call Sam");
  pressKey(Qt::Key_Return);
  ASSERT_EQ(queueTitles(), (std::vector<QString>{"Draft the agenda", "Call Sam"}));

  openScreen();
  panels->choose(backup);
  clickButton("Restore Backup…");
  ASSERT_TRUE(confirmationShown());
  EXPECT_TRUE(showsText("Restore this backup?"));
  EXPECT_TRUE(showsText("Your current database will be backed up first."));
  screenshot("datasafety-confirm");

  clickButton("Restore Backup");
  EXPECT_FALSE(confirmationShown());
  EXPECT_EQ(status(), "Restored · Brindlet Backup.json");
  EXPECT_TRUE(alertText().isEmpty());
  EXPECT_EQ(stored().tasks.size(), 1U);

  click(item("destination.Today"));
  EXPECT_EQ(queueTitles(), std::vector<QString>{"Draft the agenda"});
}

TEST_F(DataSafetyViewTest, AFailedRestoreKeepsTheOldStatusLineAndShowsTheAlert) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  openScreen();
  const QString before = status();
  const std::string stateBefore = readBytes(folders.stateFile());
  const std::filesystem::path notABackup = folder / "notes.json";
  writeBytes(notABackup, "Shopping: milk, eggs");

  panels->choose(notABackup);
  clickButton("Restore Backup…");
  clickButton("Restore Backup");
  EXPECT_FALSE(alertText().isEmpty());
  EXPECT_EQ(status(), before);
  EXPECT_EQ(readBytes(folders.stateFile()), stateBefore);

  clickButton("OK");
  EXPECT_TRUE(alertText().isEmpty());
  EXPECT_EQ(status(), before);
}

TEST_F(DataSafetyViewTest, ABackupOfALegacySchemaIsRefusedWithItsReason) {
  launch({makeTask().titled("Draft the agenda").plannedOn(kSaturday)});
  openScreen();
  const QString before = status();
  const std::filesystem::path legacy = folder / "Old Backup.json";
  writeBytes(legacy, R"({"schemaVersion": 1, "tasks": []})");

  panels->choose(legacy);
  clickButton("Restore Backup…");
  clickButton("Restore Backup");
  EXPECT_EQ(alertText(),
            "This backup uses legacy schema 1 and cannot safely restore task history.");
  EXPECT_EQ(status(), before);
  EXPECT_EQ(stored().tasks.size(), 1U);
}

}  // namespace
}  // namespace brindlet::testing
