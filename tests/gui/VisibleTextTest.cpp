// No word reaches a person but from the string tables: under a pseudo language
// that marks every table text, whatever is left unmarked must be data.
#include "app/model/AppModel.h"
#include "app/panel/Panel.h"
#include "app/tray/TrayIcon.h"
#include "app/ui/look/Identifiers.h"
#include "core/cli/CLI.h"
#include "core/l10n/L10n.h"

#include "support/FakeAppWorld.h"
#include "support/FakeAutomationServices.h"
#include "support/OpenPanel.h"
#include "support/ParamName.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace {

// English, with each run of words between placeholders marked: "⟦Switching failed. ⟧%1".
StringTable marked()
{
    static const QRegularExpression words(QStringLiteral("((?:%(?!\\d)|(?<!%)[^%])+)"),
                                          QRegularExpression::DotMatchesEverythingOption);
    const auto english = StringTable::load(L10n::resourceDirectory(), QStringLiteral("en")).value_or(StringTable());
    QHash<QString, QString> texts;
    for (const QString &key : english.keys())
        texts.insert(key, english.text(key)->replace(words, QStringLiteral("⟦\\1⟧")));
    return StringTable(texts);
}

struct Shown
{
    FakeAppWorld world;
    FakeAutomationServices fake;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<Panel> panel;

    QStringList window(const QList<const char *> &clicks = {})
    {
        openPanel(world.services(), model, panel);
        for (const char *identifier : clicks)
            QTest::mouseClick(panel->findChild<QAbstractButton *>(identifier), Qt::LeftButton);
        return texts();
    }
    // The tray's tooltip and what every widget shown says, to eyes or to a screen reader.
    QStringList texts()
    {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        QStringList texts{TrayIcon::toolTip(*model)};
        for (const QWidget *widget : panel->findChildren<QWidget *>()) {
            if (!widget->isVisibleTo(panel.get()))
                continue;
            texts << widget->toolTip() << widget->accessibleName() << widget->accessibleDescription();
            if (const auto *label = qobject_cast<const QLabel *>(widget))
                texts << label->text();
            if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
                texts << button->text();
            if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
                texts << edit->placeholderText();
        }
        return texts;
    }
    QStringList commandLine(const QString &line, std::optional<SwitchOutcome> outcome = SwitchOutcome::success())
    {
        CLIServices s;
        s.automation = fake.services();
        s.switchOnce = [outcome] { return outcome; };
        QBuffer out, err;
        out.open(QIODevice::WriteOnly);
        err.open(QIODevice::WriteOnly);
        CLI(s, out, err).run(line.split(u' '));
        return QString::fromUtf8(out.data() + err.data()).split(u'\n');
    }
};

struct SurfaceRow
{
    const char *name;
    std::function<QStringList(Shown &)> show;
};

struct VisibleTextTest : testing::TestWithParam<SurfaceRow>
{
    static void useEverywhere(const std::optional<StringTable> &table)
    {
        for (const L10n::Language &language : L10n::supported())
            L10n::replaceTable(language.code, table);
    }
    void SetUp() override { useEverywhere(marked()); }
    void TearDown() override
    {
        QThreadPool::globalInstance()->waitForDone();
        useEverywhere(std::nullopt);
    }
};

TEST_P(VisibleTextTest, LeavesOnlyDataUnmarked)
{
    static const QRegularExpression markedRun(QStringLiteral("⟦[^⟧]*⟧")), letter(QStringLiteral("\\p{L}"));
    const QStringList data = {"English (US)", "xkb:us::eng", "German", "xkb:de::deu",   "Hangul",
                              "hangul",       "IBus",        "gnome",  "/c/config.json"};
    Shown shown;
    shown.fake.stored = shown.world.config;
    for (const QString &text : GetParam().show(shown)) {
        QString rest = QString(text).remove(markedRun);
        for (const QString &datum : data)
            rest.remove(datum);
        EXPECT_FALSE(rest.contains(letter)) << qPrintable(text);
    }
}

const auto failed = LocalizedText("enf.switch", {"xkb:us::eng", "-50"});
// clang-format off
const SurfaceRow surfaces[] = {
    {"SetupChoosing", [](Shown &s) { s.world.config.reset(); return s.window(); }},
    {"SetupConfirming", [](Shown &s) { s.world.config.reset(); return s.window({"source-hangul", Identifier::setupNext}); }},
    {"PanelAndTrayAfterAFailedSwitch", [](Shown &s) {
        s.window();
        s.model->apply();
        s.world.applies.back()(SwitchOutcome::failed(failed));
        return s.texts(); }},
    {"Settings", [](Shown &s) { return s.window({Identifier::settings}); }},
    {"StatusWhileTheFrameworkIsDown", [](Shown &s) {
        s.fake.running = false;
        s.fake.availability = InputSources::Availability::notRunning;
        return s.commandLine("status"); }},
    {"AFailedSwitch", [](Shown &s) { return s.commandLine("apply", SwitchOutcome::failed(failed)); }},
    {"ASwitchThatNeverReported", [](Shown &s) { return s.commandLine("apply", std::nullopt); }},
    {"UnreadableSettings", [](Shown &s) {
        s.fake.loadError = Config::decode("[]", "/c/config.json").error();
        return s.commandLine("status"); }},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Surfaces, VisibleTextTest, testing::ValuesIn(surfaces), ParamName());

} // namespace
