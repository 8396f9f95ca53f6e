// Settings and the welcome tour driven as a user would: keys and clicks on the real widgets,
// over in-memory settings; the city field against a local geocoding server.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>

#include <set>

#include "settings/KeyedAccess.h"
#include "snapshot/SceneRig.h"
#include "ui/controls/ChoiceControl.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ShortcutRecorder.h"
#include "ui/controls/StepSlider.h"
#include "ui/controls/ToggleSwitch.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/panel/PanelWindow.h"
#include "ui/panel/TabBar.h"
#include "ui/settings/PlaceSearchField.h"
#include "ui/settings/SettingsController.h"
#include "ui/settings/SettingsIndexView.h"
#include "ui/settings/SettingsPageView.h"
#include "ui/settings/SettingsView.h"
#include "ui/tests/UiTestApp.h"
#include "weather/qt/OpenMeteoClient.h"
#include "weather/qt/WeatherSearch.h"
#include "weather/tests/LocalHttpServer.h"
#include "weather/tests/OpenMeteoSamples.h"

namespace trotlet::ui {
namespace {

using panel::RowKind;
using panel::SettingsSection;

void settle() {
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
}

void press(QWidget* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           const QString& text = {}) {
    QPointer<QWidget> alive(target);
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &down);
    // The press may have closed the page the widget was on.
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
    if (alive) QApplication::sendEvent(target, &up);
}

class SettingsViewTest : public ::testing::Test {
protected:
    SettingsViewTest()
        : rig((application(), metrics::MetricsFixture::normal)), window(rig.model(), rig.theme()) {
        controller.setAbout(QStringLiteral("1.2.3"), {}, QStringLiteral("~/.config/trotlet"),
                            QStringLiteral("~/.local/share/trotlet"));
        view = new SettingsView(rig.model(), rig.theme(), controller);
        window.setTabScreen(panel::PanelTab::settings, view);
        window.showTab(panel::PanelTab::settings);
        window.show();
        QApplication::setActiveWindow(&window);
        auto& s = rig.settings();
        for (settings::SettingsGroup* group : std::initializer_list<settings::SettingsGroup*>{
                 &s.general(), &s.monitoring(), &s.menuBar(), &s.mascot(), &s.notifications(),
                 &s.weather(), &s.layout()})
            group->observe([this](const std::string& key) { written.push_back(key); });
    }

    int storeWrites() {
        return static_cast<settings::InMemorySettingsBacking&>(*rig.settings().store().backing())
            .writeCount();
    }

    SettingsPageView& open(SettingsSection section) {
        view->openSection(section, true);
        settle();
        return *view->page();
    }

    snapshot::SceneRig rig;
    SettingsController controller;
    PanelWindow window;
    SettingsView* view = nullptr;
    std::vector<std::string> written;
};

TEST_F(SettingsViewTest, EachControlWritesExactlyItsKeyWithItsTypeAndOnlyOnARealChange) {
    // Show every row that hides behind another.
    rig.settings().notifications().setHighCPU(true);
    rig.settings().menuBar().setTextMetric(settings::MenuBarTextMetric::cpu);
    int checked = 0;
    for (std::size_t i = 0; i < panel::SettingsSectionNames.size(); ++i) {
        SettingsPageView& page = open(SettingsSection(i));
        std::vector<std::string> ids;
        for (SettingsRowView* row : page.rows()) ids.push_back(row->row().id);
        for (const std::string& id : ids) {
            SettingsRowView* row = view->page()->row(id);
            if (!row) continue;  // hidden by a switch flipped just before
            const panel::SettingsRow described = row->row();
            const auto kind = described.kind;
            if (kind != RowKind::toggle && kind != RowKind::segmented && kind != RowKind::chips &&
                kind != RowKind::slider && kind != RowKind::cardToggle)
                continue;
            SCOPED_TRACE(id);
            const std::string key = kind == RowKind::cardToggle ? "layout.overview" : described.key;
            const auto before = settings::keyed::value(rig.settings(), key);
            written.clear();
            const int writes = storeWrites();
            QWidget* control = row->focusTarget();
            control->setFocus(Qt::TabFocusReason);
            // A move that must change the value: the far end from where the choice stands.
            const int far =
                described.selected && *described.selected > 0 ? Qt::Key_Home : Qt::Key_End;
            press(control,
                  kind == RowKind::toggle || kind == RowKind::cardToggle ? Qt::Key_Space : far);
            EXPECT_EQ(written, std::vector<std::string>{key});
            EXPECT_EQ(storeWrites(), writes + 1);
            const auto after = settings::keyed::value(rig.settings(), key);
            ASSERT_TRUE(after);
            EXPECT_NE(*after, *before);
            // The stored type stays the key's own.
            if (!before->is_null()) {
                EXPECT_EQ(after->is_number(), before->is_number());
                EXPECT_EQ(after->is_boolean(), before->is_boolean());
                EXPECT_EQ(after->is_string(), before->is_string());
            }
            if (kind != RowKind::toggle && kind != RowKind::cardToggle) {
                // The same end again is no change: the groups are never even asked.
                press(control, far);
                EXPECT_EQ(storeWrites(), writes + 1);
            }
            settle();
            ++checked;
        }
    }
    EXPECT_GE(checked, 35);
}

TEST_F(SettingsViewTest, TheKeyboardWalksTheIndexIntoASectionAndBack) {
    SectionRow& general = view->index().row(SettingsSection::general);
    general.setFocus(Qt::TabFocusReason);
    press(&general, Qt::Key_Down);
    press(&view->index().row(SettingsSection::menuBar), Qt::Key_Down);
    SectionRow& mascot = view->index().row(SettingsSection::mascot);
    ASSERT_TRUE(mascot.hasFocus());
    press(&mascot, Qt::Key_Return);
    ASSERT_EQ(view->section(), SettingsSection::mascot);
    QWidget* first = view->page()->rows().front()->focusTarget();
    EXPECT_TRUE(first->hasFocus());
    EXPECT_TRUE(static_cast<Control*>(first)->showsFocusRing());
    EXPECT_EQ(first->accessibleName(), QStringLiteral("React to the machine"));
    int closes = 0;
    QObject::connect(&window, &PanelWindow::closeRequested, [&] { ++closes; });
    press(first, Qt::Key_Escape);
    EXPECT_FALSE(view->section());
    EXPECT_TRUE(mascot.hasFocus()) << "back where it came from";
    EXPECT_EQ(closes, 0);
    press(&mascot, Qt::Key_Escape);
    EXPECT_EQ(closes, 1) << "on the index Escape closes the panel";
    EXPECT_EQ(mascot.accessibleDescription().toStdString(),
              "Reactions, naps, mood line, Golden Fish");
}

TEST_F(SettingsViewTest, ASwitchThatRevealsARowKeepsTheFocusAndTheOverviewFollowsTheCards) {
    SettingsPageView& page = open(SettingsSection::notifications);
    ToggleSwitch* highCPU = page.row("notifications.highCPU")->toggle();
    highCPU->setFocus(Qt::TabFocusReason);
    press(highCPU, Qt::Key_Space);
    settle();
    ASSERT_NE(view->page()->row("notifications.highCPUThreshold"), nullptr);
    EXPECT_TRUE(view->page()->row("notifications.highCPU")->toggle()->hasFocus());

    int rebuilt = 0;
    QObject::connect(&rig.model(), &PanelModel::layoutChanged, [&] { ++rebuilt; });
    SettingsPageView& monitoring = open(SettingsSection::monitoring);
    EXPECT_EQ(monitoring.row("resetLayout"), nullptr);
    monitoring.row("card.gpu")->toggle()->activate();
    settle();
    EXPECT_EQ(rig.layout().layout().hiddenIDs(), (std::vector<std::string>{"gpu", "weather"}));
    EXPECT_EQ(rebuilt, 1);
    SettingsRowView* reset = view->page()->row("resetLayout");
    ASSERT_NE(reset, nullptr);
    reset->button()->activate();
    settle();
    EXPECT_FALSE(rig.layout().canReset());
    EXPECT_EQ(view->page()->row("resetLayout"), nullptr);
    EXPECT_TRUE(view->page()->row("card.gpu")->toggle()->isOn());
}

TEST_F(SettingsViewTest, TheRecorderTakesACombinationWithAModifierAndWritesBothHalves) {
    SettingsPageView& page = open(SettingsSection::general);
    ShortcutRecorder* recorder = page.row("shortcut")->recorder();
    std::vector<bool> recording;
    QObject::connect(&controller, &SettingsController::shortcutRecording,
                     [&](bool on) { recording.push_back(on); });
    recorder->setFocus(Qt::TabFocusReason);
    press(recorder, Qt::Key_Space);
    ASSERT_TRUE(recorder->isRecording());
    written.clear();
    press(recorder, Qt::Key_K, Qt::NoModifier, QStringLiteral("k"));
    EXPECT_TRUE(recorder->isRecording()) << "a bare key is refused";
    EXPECT_TRUE(written.empty());
    press(recorder, Qt::Key_Tab);
    EXPECT_TRUE(recorder->hasFocus()) << "Tab is a key like any other while recording";
    press(recorder, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(written, (std::vector<std::string>{"general.globalShortcutKeyCode",
                                                 "general.globalShortcutModifiers"}));
    EXPECT_EQ(rig.settings().general().globalShortcutKeyCode(), 40);  // K
    EXPECT_EQ(rig.settings().general().globalShortcutModifiers(), 4096 + 2048);
    EXPECT_EQ(recording, (std::vector<bool>{true, false}));
    settle();
    EXPECT_EQ(view->page()->row("shortcut")->recorder()->shortcutText(),
              QStringLiteral("Ctrl+Alt+K"));

    written.clear();
    recorder = view->page()->row("shortcut")->recorder();
    recorder->startRecording();
    press(recorder, Qt::Key_Escape);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_TRUE(written.empty()) << "Escape keeps the shortcut";
}

// The city field against a local geocoding server.
class PlaceFieldTest : public SettingsViewTest {
protected:
    PlaceFieldTest()
        : server([this](const weather::testing::HttpRequest& r) {
              const std::string name = r.query("name");
              if (name == "Lyon") return weather::testing::HttpResponse{{}, 500, "{}"};
              // The fuller text answers a little later, as a real service might.
              if (name == "Paris")
                  return weather::testing::HttpResponse{
                      {}, 200, weather::samples::geocodingParis(), 150};
              return weather::testing::HttpResponse{
                  {},
                  200,
                  R"({"results":[{"id":7,"name":"Paraná","latitude":-31.7,"longitude":-60.5,
                      "country":"Argentina","admin1":"Entre Ríos","timezone":"America/Argentina/Cordoba"}]})"};
          }) {
        weather::OpenMeteoClientOptions o;
        o.geocodingBase = server.base("/v1/search");
        o.forecastBase = server.base("/v1/forecast");
        o.recogniser = [](std::string_view) { return std::vector<weather::LanguageHypothesis>{}; };
        client = std::make_unique<weather::OpenMeteoClient>(o);
        controller.setPlaceSearch(
            std::make_unique<weather::WeatherSearch>(client.get(), "en", 120));
        field = open(SettingsSection::weather).row("placeSearch")->placeField();
        field->edit().setFocus(Qt::TabFocusReason);
    }

    void type(const QString& text) {
        for (QChar c : text)
            press(&field->edit(), c.toUpper().unicode(), Qt::NoModifier, QString(c));
    }
    int searchesFor(const std::string& name) const {
        int n = 0;
        for (const auto& r : server.requests()) n += r.query("name") == name;
        return n;
    }
    std::optional<weather::WeatherLocation> chosen() {
        const auto& encoded = rig.settings().weather().encodedLocation();
        return encoded ? weather::decodeLocationSetting(*encoded) : std::nullopt;
    }

    weather::testing::LocalHttpServer server;
    std::unique_ptr<weather::OpenMeteoClient> client;
    PlaceSearchField* field = nullptr;
};

TEST_F(PlaceFieldTest, TypingFastAsksOnceAndReturnOverAStaleListTakesTheFreshTopMatch) {
    type(QStringLiteral("Par"));
    ASSERT_TRUE(weather::testing::spinUntil([&] { return field->suggestions().count() == 1; }));
    EXPECT_EQ(searchesFor("Par"), 1);
    type(QStringLiteral("is"));
    EXPECT_FALSE(field->suggestions().isCurrent()) << "the list for Par dims at once";
    press(&field->edit(), Qt::Key_Return);
    ASSERT_TRUE(weather::testing::spinUntil([&] { return chosen().has_value(); }));
    EXPECT_EQ(chosen()->id, 2988507) << "Paris, France, not Paraná";
    settle();
    // The place row came, so the block was built again; the field kept the focus, empty.
    field = view->page()->row("placeSearch")->placeField();
    EXPECT_TRUE(field->edit().text().isEmpty());
    EXPECT_TRUE(field->edit().hasFocus());
    EXPECT_EQ(searchesFor("Pa"), 0);
    EXPECT_EQ(searchesFor("Pari"), 0);
    weather::testing::spinFor(300);
    EXPECT_LE(searchesFor("Paris"), 2) << "the resolve's own, and at most the debounced one";
    settle();
    ASSERT_NE(view->page()->row("place"), nullptr);
    EXPECT_EQ(view->page()->row("place")->row().title, "Paris, Île-de-France, France");
}

TEST_F(PlaceFieldTest, TypingQuicklySendsOneRequestAndArrowsMoveTheHighlight) {
    type(QStringLiteral("Paris"));
    ASSERT_TRUE(weather::testing::spinUntil([&] { return field->suggestions().count() == 3; }));
    weather::testing::spinFor(200);
    EXPECT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(searchesFor("Paris"), 1);
    press(&field->edit(), Qt::Key_Down);
    press(&field->edit(), Qt::Key_Down);
    press(&field->edit(), Qt::Key_Down);
    EXPECT_EQ(field->highlighted(), 2) << "the last row holds";
    press(&field->edit(), Qt::Key_Up);
    press(&field->edit(), Qt::Key_Return);
    ASSERT_TRUE(weather::testing::spinUntil([&] { return chosen().has_value(); }));
    EXPECT_EQ(chosen()->id, 4717560) << "the highlighted row, Paris in Texas";
}

TEST_F(PlaceFieldTest, AFailedSearchIsShownAndNeverClearsTheChosenPlace) {
    type(QStringLiteral("Paris"));
    ASSERT_TRUE(weather::testing::spinUntil([&] { return field->suggestions().count() == 3; }));
    press(&field->edit(), Qt::Key_Return);
    ASSERT_TRUE(weather::testing::spinUntil([&] { return chosen().has_value(); }));
    settle();
    field = view->page()->row("placeSearch")->placeField();
    field->edit().setFocus(Qt::TabFocusReason);
    type(QStringLiteral("Lyon"));
    const QString failed = QString::fromStdString(weather::WeatherError::server(500).message());
    ASSERT_TRUE(weather::testing::spinUntil([&] { return field->statusText() == failed; }))
        << field->statusText().toStdString();
    press(&field->edit(), Qt::Key_Return);
    weather::testing::spinFor(300);
    ASSERT_TRUE(chosen());
    EXPECT_EQ(chosen()->id, 2988507);
    press(&field->edit(), Qt::Key_Escape);
    EXPECT_TRUE(field->edit().text().isEmpty());
    EXPECT_TRUE(view->section()) << "the first Escape empties the field, not the page";
}

TEST_F(SettingsViewTest, TheTourWalksByKeyboardAndFinishingMarksItDone) {
    int granted = 0;
    QObject::connect(&controller, &SettingsController::welcomeGiftRequested, [&] {
        ++granted;
        controller.setWelcomeGift(true, 100);
    });
    bool closed = false;
    QObject::connect(&controller, &SettingsController::onboardingClosed, [&] { closed = true; });
    auto* tour = new OnboardingView(rig.model(), rig.theme(), controller);
    window.setCover(tour);
    EXPECT_FALSE(window.tabs().isVisible());
    press(&window, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(window.currentTab(), panel::PanelTab::settings) << "no tab keys under the tour";
    for (int step = 0; step < 4; ++step) press(&tour->primaryButton(), Qt::Key_Return);
    ASSERT_EQ(tour->step(), panel::OnboardingStep::gift);
    EXPECT_TRUE(tour->primaryButton().hasFocus());
    press(&tour->primaryButton(), Qt::Key_Return);
    press(&tour->giftBox(), Qt::Key_Space);
    EXPECT_EQ(granted, 1) << "an opened gift asks no more";
    EXPECT_EQ(tour->primaryButton().text(), QStringLiteral("Start"));
    EXPECT_FALSE(closed);
    press(&tour->primaryButton(), Qt::Key_Return);
    EXPECT_TRUE(closed);
    EXPECT_TRUE(rig.settings().general().hasCompletedOnboarding());
    EXPECT_TRUE(rig.settings().general().hasFinishedOnboardingOnce());
}

}  // namespace
}  // namespace trotlet::ui
