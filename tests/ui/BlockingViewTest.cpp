// The Blocking screen: setup and running cards, the countdown and the domain editor.

#include <gtest/gtest.h>

#include <QQuickItem>
#include <algorithm>

#include "TempDir.h"
#include "UiFixture.h"
#include "app/AppModel.h"

namespace brindlet::testing {
namespace {

QString textOf(QQuickItem* item) { return item ? item->property("text").toString() : QString(); }

class BlockingViewTest : public UiTest {
 protected:
  /// Launches and opens the Blocking destination from the sidebar.
  void open(const std::vector<FocusTask>& tasks = {}) {
    launch(tasks);
    click(item("destination.Blocking"));
    ASSERT_NE(item("blockingView"), nullptr);
  }

  /// Scrolls the screen, as the wheel would, until `target` lies wholly in the window.
  void reveal(QQuickItem* target) {
    ASSERT_NE(target, nullptr);
    frame();
    auto* flickable = qvariant_cast<QQuickItem*>(item("blockingView")->property("flickable"));
    ASSERT_NE(flickable, nullptr);
    const double top = target->mapToItem(flickable, QPointF(0, 0)).y();
    const double bottom = top + target->height();
    double contentY = flickable->property("contentY").toDouble();
    if (bottom > flickable->height()) contentY += bottom - flickable->height() + 16;
    if (top < 0) contentY += top - 16;
    flickable->setProperty("contentY", std::max(0.0, contentY));
    frame();
  }

  void clickShown(QQuickItem* target) {
    reveal(target);
    click(target);
  }
  void clickShownButton(const QString& text) { clickShown(button(text)); }

  /// Types into the domain field after clicking it.
  void typeDomain(const QString& text) {
    clickShown(item("domainField"));
    type(text);
  }

  [[nodiscard]] bool editorControlsEnabled(bool expected) const {
    std::vector<QQuickItem*> controls{item("domainField"), item("addDomainButton")};
    for (const DomainRule& rule : DomainGroup::socialDistractions().rules) {
      const QString domain = QString::fromStdString(rule.domain);
      controls.push_back(item("domainSwitch." + domain));
      controls.push_back(item("removeDomain." + domain));
    }
    return std::all_of(controls.begin(), controls.end(), [&](QQuickItem* control) {
      return control != nullptr && control->isEnabled() == expected;
    });
  }

  [[nodiscard]] std::vector<std::string> storedDomains() const {
    const PersistedState document = stored();
    std::vector<std::string> domains;
    for (const DomainRule& rule : document.groups.at(0).rules) domains.push_back(rule.domain);
    return domains;
  }

  [[nodiscard]] bool hostsBlock(const std::string& domain) const {
    return readBytes(hostsPath).find(" " + domain) != std::string::npos;
  }
};

TEST_F(BlockingViewTest, OpensFromTheSidebar) {
  launch();
  click(item("destination.Blocking"));
  EXPECT_NE(item("blockingView"), nullptr);
}

TEST_F(BlockingViewTest, TheSetupCardOffersDurationModeAndStartUnderTheTitle) {
  open();
  EXPECT_EQ(textOf(item("screenTitle")), "Website Blocking");
  EXPECT_EQ(textOf(item("screenSubtitle")),
            "Protect a task or start a standalone blocking session.");
  EXPECT_NE(item("setupCard"), nullptr);
  EXPECT_EQ(item("runningCard"), nullptr);
  EXPECT_EQ(buttonsIn(item("durationPicker")),
            (std::vector<QString>{"25 min", "1 hour", "4 hours", "Custom"}));
  EXPECT_TRUE(item("durationPicker.25 min")->property("selected").toBool());
  EXPECT_EQ(buttonsIn(item("modePicker")), (std::vector<QString>{"Flexible", "Strict"}));
  EXPECT_TRUE(item("modePicker.Flexible")->property("selected").toBool());
  EXPECT_EQ(item("customMinutesStepper"), nullptr);
  EXPECT_TRUE(button("Start Blocking")->isEnabled());
  EXPECT_TRUE(showsText("macOS asks for approval. Tolvane never stores your password."));
  EXPECT_TRUE(showsText("No browsing history leaves this Mac."));

  EXPECT_EQ(textOf(item("domainGroupName")), "Social Distractions");
  EXPECT_TRUE(showsText("Blocked on this Mac"));
  EXPECT_EQ(item("lockedLabel"), nullptr);
  for (const DomainRule& rule : DomainGroup::socialDistractions().rules) {
    QQuickItem* toggle = item("domainSwitch." + QString::fromStdString(rule.domain));
    ASSERT_NE(toggle, nullptr);
    EXPECT_TRUE(toggle->property("checked").toBool());
  }
  EXPECT_EQ(item("domainField")->property("placeholderText").toString(), "example.com");
  EXPECT_FALSE(item("addDomainButton")->isEnabled());
  screenshot("blocking-setup");
}

TEST_F(BlockingViewTest, CustomPutsTheStepperBetweenThePickersAndKeepsItsNumberWhileAway) {
  open();
  clickShownButton("Custom");
  QQuickItem* stepper = item("customMinutesStepper");
  ASSERT_NE(stepper, nullptr);
  const auto top = [](QQuickItem* each) { return each->mapToScene(QPointF(0, 0)).y(); };
  EXPECT_GT(top(stepper), top(item("durationPicker")));
  EXPECT_LT(top(stepper), top(item("modePicker")));
  EXPECT_EQ(textOf(item("customMinutesStepper.text")), "90 minutes");

  clickShown(item("customMinutesStepper.up"));
  clickShown(item("customMinutesStepper.up"));
  EXPECT_EQ(textOf(item("customMinutesStepper.text")), "92 minutes");
  EXPECT_EQ(host->state().duration(), 92 * 60.0);
  screenshot("blocking-setup-custom");

  clickShownButton("1 hour");
  EXPECT_EQ(item("customMinutesStepper"), nullptr);
  EXPECT_EQ(host->state().duration(), 3600.0);

  clickShownButton("Custom");
  EXPECT_EQ(textOf(item("customMinutesStepper.text")), "92 minutes");
}

TEST_F(BlockingViewTest, TheStepperGoesNoLowerThanOneMinuteAndNoHigherThanADay) {
  open();
  clickShownButton("Custom");
  onModel([](AppModel& model) { model.setCustomMinutes(2); });
  clickShown(item("customMinutesStepper.down"));
  clickShown(item("customMinutesStepper.down"));
  clickShown(item("customMinutesStepper.down"));
  EXPECT_EQ(textOf(item("customMinutesStepper.text")), "1 minutes");
  EXPECT_EQ(host->state().customMinutes, 1);

  onModel([](AppModel& model) { model.setCustomMinutes(1439); });
  clickShown(item("customMinutesStepper.up"));
  clickShown(item("customMinutesStepper.up"));
  EXPECT_EQ(textOf(item("customMinutesStepper.text")), "1440 minutes");
  EXPECT_EQ(host->state().customMinutes, 1440);
}

TEST_F(BlockingViewTest, AFlexibleSessionRunsWithAMovingCountdownUntilEndSession) {
  open();
  clickShownButton("Start Blocking");
  ASSERT_NE(item("runningCard"), nullptr);
  EXPECT_EQ(item("setupCard"), nullptr);
  EXPECT_EQ(textOf(item("screenTitle")), "Focus Active");
  EXPECT_EQ(textOf(item("sessionHeading")), "Flexible session");
  EXPECT_EQ(textOf(item("sessionGroupName")), "Social Distractions");
  EXPECT_EQ(textOf(item("countdown")), "25:00");
  EXPECT_TRUE(hostsBlock("facebook.com"));
  ASSERT_TRUE(stored().activeSession.has_value());
  EXPECT_EQ(stored().activeSession->mode, SessionMode::flexible);

  clock->advance(83);
  onModel([](AppModel& model) { model.heartbeat(); });
  EXPECT_EQ(textOf(item("countdown")), "23:37");
  screenshot("blocking-running-flexible");

  clickShownButton("End Session");
  EXPECT_NE(item("setupCard"), nullptr);
  EXPECT_EQ(item("runningCard"), nullptr);
  EXPECT_EQ(textOf(item("screenTitle")), "Website Blocking");
  EXPECT_FALSE(stored().activeSession.has_value());
  EXPECT_FALSE(hostsBlock("facebook.com"));
}

TEST_F(BlockingViewTest, AStrictSessionOffersNoEndAndLocksTheEditor) {
  open();
  clickShownButton("4 hours");
  clickShownButton("Strict");
  clickShownButton("Start Blocking");
  ASSERT_NE(item("runningCard"), nullptr);
  EXPECT_EQ(textOf(item("sessionHeading")), "Strict session");
  EXPECT_EQ(textOf(item("countdown")), "04:00:00");
  EXPECT_TRUE(buttonsIn(item("runningCard")).empty());
  EXPECT_TRUE(texts("End Session").empty());
  EXPECT_NE(item("lockedLabel"), nullptr);
  EXPECT_TRUE(editorControlsEnabled(false));
  screenshot("blocking-running-strict");

  // A click on a disabled control changes nothing.
  clickShown(item("removeDomain.x.com"));
  EXPECT_EQ(storedDomains().size(), 5U);
}

TEST_F(BlockingViewTest, DuringAStrictSessionTheEditorIsLockedAndDuringAFlexibleOneItIsOpen) {
  open();
  // Text in the field, so that only the lock can keep "Add" disabled.
  typeDomain("example.net");
  clickShownButton("Strict");
  clickShownButton("Start Blocking");
  EXPECT_TRUE(editorControlsEnabled(false));
  EXPECT_NE(item("lockedLabel"), nullptr);
  EXPECT_TRUE(showsText("Locked"));

  // The strict session runs out by its timer; the next one is flexible.
  clock->advance(25 * 60);
  onModel([](AppModel& model) { model.heartbeat(); });
  ASSERT_NE(item("setupCard"), nullptr);
  clickShownButton("Flexible");
  clickShownButton("Start Blocking");
  ASSERT_NE(item("runningCard"), nullptr);
  EXPECT_EQ(textOf(item("sessionHeading")), "Flexible session");
  EXPECT_TRUE(editorControlsEnabled(true));
  EXPECT_EQ(item("lockedLabel"), nullptr);
  EXPECT_FALSE(showsText("Locked"));

  // And the list really is editable while it runs.
  clickShown(item("domainSwitch.tiktok.com"));
  EXPECT_FALSE(stored().groups.at(0).rules.at(2).isEnabled);
}

TEST_F(BlockingViewTest, WhenTheSessionRunsOutTheSetupCardReturnsAtTheNextHeartbeat) {
  open();
  clickShownButton("Start Blocking");
  ASSERT_NE(item("runningCard"), nullptr);

  clock->advance(25 * 60 - 1);
  onModel([](AppModel& model) { model.heartbeat(); });
  EXPECT_EQ(textOf(item("countdown")), "00:01");

  clock->advance(1);
  onModel([](AppModel& model) { model.heartbeat(); });
  EXPECT_EQ(item("runningCard"), nullptr);
  EXPECT_NE(item("setupCard"), nullptr);
  EXPECT_EQ(textOf(item("screenTitle")), "Website Blocking");
  EXPECT_FALSE(hostsBlock("facebook.com"));
}

TEST_F(BlockingViewTest, WithProtectionNeedingAttentionTheRunningCardStandsUnderWebsiteBlocking) {
  open();
  clickShownButton("Start Blocking");
  EXPECT_EQ(textOf(item("screenTitle")), "Focus Active");

  // Lifting the block at expiry fails, so the session outlives its timer and needs attention.
  runner->thenReplace(FakePrivilegedRunner::fails(BlockingError::authorizationCancelled()));
  clock->advance(25 * 60);
  onModel([](AppModel& model) { model.heartbeat(); });
  ASSERT_EQ(host->state().protectionStatus, ProtectionStatus::attentionRequired);
  ASSERT_TRUE(host->state().activeSession.has_value());
  EXPECT_EQ(textOf(item("screenTitle")), "Website Blocking");
  EXPECT_NE(item("runningCard"), nullptr);
  EXPECT_EQ(textOf(item("countdown")), "00:00");
  EXPECT_EQ(textOf(item("sessionHeading")), "Flexible session");
}

TEST_F(BlockingViewTest, StartWithEveryDomainSwitchedOffAlertsInsteadOfBlocking) {
  open();
  for (const DomainRule& rule : DomainGroup::socialDistractions().rules) {
    clickShown(item("domainSwitch." + QString::fromStdString(rule.domain)));
  }
  const PersistedState document = stored();
  for (const DomainRule& rule : document.groups.at(0).rules) EXPECT_FALSE(rule.isEnabled);
  clickShownButton("Start Blocking");
  EXPECT_EQ(textOf(item("errorAlertMessage")), "Enable at least one domain before starting.");
  EXPECT_EQ(item("runningCard"), nullptr);
  EXPECT_FALSE(stored().activeSession.has_value());
}

TEST_F(BlockingViewTest, AddingADomainListsItAndEmptiesTheFieldWhileReturnAddsNothing) {
  open();
  typeDomain("News.example.org");
  EXPECT_TRUE(item("addDomainButton")->isEnabled());
  pressKey(Qt::Key_Return);
  EXPECT_EQ(storedDomains().size(), 5U);
  EXPECT_EQ(textOf(item("domainField")), "News.example.org");

  clickShown(item("addDomainButton"));
  EXPECT_NE(item("domainSwitch.news.example.org"), nullptr);
  EXPECT_EQ(storedDomains().back(), "news.example.org");
  EXPECT_EQ(textOf(item("domainField")), "");
  EXPECT_FALSE(item("addDomainButton")->isEnabled());
}

TEST_F(BlockingViewTest, TheSwitchAndTheBinChangeTheStoredGroup) {
  open();
  clickShown(item("domainSwitch.instagram.com"));
  EXPECT_FALSE(stored().groups.at(0).rules.at(1).isEnabled);
  EXPECT_FALSE(item("domainSwitch.instagram.com")->property("checked").toBool());

  QQuickItem* bin = item("removeDomain.x.com");
  ASSERT_NE(bin, nullptr);
  clickShown(bin);
  EXPECT_EQ(item("domainRow.x.com"), nullptr);
  EXPECT_EQ(storedDomains(), (std::vector<std::string>{"facebook.com", "instagram.com",
                                                       "tiktok.com", "twitter.com"}));
}

TEST_F(BlockingViewTest, TheBinIsNamedAfterItsDomainForAssistiveTechnology) {
  open();
  QQuickItem* bin = item("removeDomain.tiktok.com");
  ASSERT_NE(bin, nullptr);
  QObject* attached = nullptr;
  for (QObject* child : bin->children()) {
    if (QString(child->metaObject()->className()).contains("Accessible")) attached = child;
  }
  ASSERT_NE(attached, nullptr);
  EXPECT_EQ(attached->property("name").toString(), "Remove tiktok.com");
}

TEST_F(BlockingViewTest, AddingADuplicateDomainAlertsThatItIsAlreadyInTheGroup) {
  open();
  typeDomain("https://WWW.Facebook.com/home");
  clickShown(item("addDomainButton"));
  EXPECT_EQ(textOf(item("errorAlertMessage")), "That domain is already in this group.");
  EXPECT_EQ(storedDomains().size(), 5U);
  clickButton("OK");
  EXPECT_EQ(item("errorAlertMessage"), nullptr);
  EXPECT_EQ(textOf(item("domainField")), "https://WWW.Facebook.com/home");
}

TEST_F(BlockingViewTest, AnInvalidDomainAlertsWithItsOwnMessage) {
  open();
  typeDomain("127.0.0.1");
  clickShown(item("addDomainButton"));
  EXPECT_EQ(textOf(item("errorAlertMessage")), "Enter a domain name, not an IP address.");
  clickButton("OK");

  clickShown(item("domainField"));
  for (int i = 0; i < 9; ++i) pressKey(Qt::Key_Backspace);
  type("localhost");
  clickShown(item("addDomainButton"));
  EXPECT_EQ(textOf(item("errorAlertMessage")), "That domain is not valid.");
  EXPECT_EQ(storedDomains().size(), 5U);
}

TEST_F(BlockingViewTest, SpacesAloneEnableAddAndAreRefusedByTheAlert) {
  open();
  typeDomain("   ");
  EXPECT_TRUE(item("addDomainButton")->isEnabled());
  clickShown(item("addDomainButton"));
  EXPECT_EQ(textOf(item("errorAlertMessage")), "Enter a domain such as example.com.");
  EXPECT_EQ(storedDomains().size(), 5U);
}

TEST_F(BlockingViewTest, TheChoicesOutliveLeavingTheScreenAndASession) {
  open();
  clickShownButton("1 hour");
  clickShownButton("Strict");
  click(item("destination.Today"));
  click(item("destination.Blocking"));
  EXPECT_TRUE(item("durationPicker.1 hour")->property("selected").toBool());
  EXPECT_TRUE(item("modePicker.Strict")->property("selected").toBool());

  clickShownButton("Start Blocking");
  clock->advance(3600);
  onModel([](AppModel& model) { model.heartbeat(); });
  ASSERT_NE(item("setupCard"), nullptr);
  EXPECT_TRUE(item("durationPicker.1 hour")->property("selected").toBool());
  EXPECT_TRUE(item("modePicker.Strict")->property("selected").toBool());
}

}  // namespace
}  // namespace brindlet::testing
