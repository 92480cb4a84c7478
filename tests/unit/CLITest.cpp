#include "core/cli/CLI.h"
#include "core/config/L10n.h"
#include "support/ParamName.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

const QString us = "xkb:us::eng";
const QString hangul = "hangul";

// A whole system of stand-ins, and the two output streams.
class CLITest : public testing::Test
{
public:
    void SetUp() override { L10n::setLanguageCode(QStringLiteral("en")); }
    void TearDown() override { L10n::setLanguageCode(std::nullopt); }

    CLIServices services()
    {
        CLIServices s;
        s.automation.load = [this]() -> Expected<Config> {
            if (corrupt)
                return Error::decode("bad");
            return stored.value_or(Config{});
        };
        s.automation.update = [this](const ConfigStore::Edit &edit) -> Expected<Config> {
            if (corrupt)
                return Error::decode("bad");
            Config config = stored.value_or(Config{});
            if (const auto edited = edit(config); !edited)
                return edited.error();
            if (unwritable)
                return Error::posix(ELOOP, "config.lock");
            stored = config;
            return config;
        };
        s.automation.choices = [this] { return choices; };
        s.automation.current = [this] { return InputChoice{current, current == us ? "English (US)" : "Korean"}; };
        s.automation.running = [this]() -> Expected<bool> { return running; };
        s.automation.secureInput = [] { return false; };
        s.automation.loginEnabled = [this] { return login; };
        s.automation.availability = [this] { return availability; };
        s.automation.framework = QStringLiteral("IBus");
        s.automation.backend = "gnome";
        s.enableCompanion = [this] {
            ++companionEnables;
            return companionTurnsOn;
        };
        s.switchOnce = [this]() -> std::optional<SwitchOutcome> {
            ++switches;
            if (outcome && *outcome == SwitchOutcome::success() && stored)
                current = *stored->sourceID;
            return outcome;
        };
        s.installLogin = [this](const QString &executable) -> Expected<void, QString> {
            installedFor = executable;
            if (loginError)
                return *loginError;
            login = true;
            return {};
        };
        s.uninstallLogin = [this]() -> Expected<void, QString> {
            if (loginError)
                return *loginError;
            login = false;
            return {};
        };
        s.openApp = [this]() -> Expected<void, AutomationFailure> {
            if (openFailure)
                return *openFailure;
            return {};
        };
        s.executablePath = [] { return QStringLiteral("/opt/tolvar/bin/tolvar"); };
        s.configFile = [] { return QStringLiteral("/home/u/Library/Application Support/Tolvar/config.json"); };
        return s;
    }

    int run(const QStringList &arguments)
    {
        out.setData({});
        err.setData({});
        out.open(QIODevice::WriteOnly);
        err.open(QIODevice::WriteOnly);
        const int status = CLI(services(), out, err).run(arguments);
        out.close();
        err.close();
        return status;
    }

    QJsonObject document() const { return QJsonDocument::fromJson(out.data()).object(); }
    QString stdoutText() const { return QString::fromUtf8(out.data()); }
    QString stderrText() const { return QString::fromUtf8(err.data()); }

    std::optional<Config> stored = Config{us, true, std::nullopt, true};
    bool corrupt = false;
    bool unwritable = false;
    QList<InputChoice> choices = {{us, "English (US)"}, {hangul, "Korean"}};
    QString current = hangul;
    bool running = true;
    bool login = false;
    InputSources::Availability availability = InputSources::Availability::available;
    bool companionTurnsOn = true;
    int companionEnables = 0;
    std::optional<SwitchOutcome> outcome = SwitchOutcome::success();
    std::optional<QString> loginError;
    std::optional<AutomationFailure> openFailure;
    QString installedFor;
    int switches = 0;
    QBuffer out;
    QBuffer err;
};

TEST_F(CLITest, ArgumentErrorWithJsonNamesTheFirstWord)
{
    EXPECT_EQ(run({"--json", "lsit"}), 1);
    EXPECT_EQ(
        out.data(),
        QByteArray(
            R"j({"command":"lsit","error":{"code":"invalid_arguments","message":"Invalid command or arguments. Run tolvar help for usage."},"ok":false,"schemaVersion":1})j"
            "\n"));
    EXPECT_EQ(run({"--json", "--json"}), 1);
    EXPECT_EQ(document()["command"].toString(), "status");
}

TEST_F(CLITest, StatusReportEndsWithTheStoppedLineWhenNothingRuns)
{
    running = false;
    EXPECT_EQ(run({}), 0);
    const QStringList lines = stdoutText().split('\n', Qt::SkipEmptyParts);
    const QString format = L10n::text("cli.line");
    ASSERT_EQ(lines.size(), 8);
    EXPECT_EQ(lines[0], format.arg(L10n::text("cli.label.state"), L10n::text("state.stopped")));
    EXPECT_EQ(lines[2], format.arg(L10n::text("cli.label.current"), "Korean  hangul"));
    EXPECT_EQ(lines[3], format.arg(L10n::text("cli.label.pinned"), "English (US)  xkb:us::eng"));
    EXPECT_EQ(lines[6], format.arg(L10n::text("cli.label.backend"), "gnome"));
    EXPECT_EQ(lines[7], L10n::text("cli.msg.stopped"));
}

TEST_F(CLITest, SetWithJsonReportsTheStatusAfterTheSwitch)
{
    EXPECT_EQ(run({"set", "--json", hangul}), 0);
    EXPECT_EQ(document()["command"].toString(), "set");
    EXPECT_EQ(document()["status"].toObject()["state"].toString(), "keeping");
}

TEST_F(CLITest, InstallPinsKeepsAndSaysSo)
{
    stored = std::nullopt;
    EXPECT_EQ(run({"install", hangul}), 0);
    EXPECT_EQ(stored, (Config{hangul, true, std::nullopt, true}));
    EXPECT_EQ(installedFor, "/opt/tolvar/bin/tolvar");
    EXPECT_EQ(companionEnables, 1);
    EXPECT_EQ(stdoutText(), L10n::text("cli.msg.pinned").arg(hangul) + "\n"
                                + L10n::text("cli.msg.login").arg(L10n::text("app.name")) + "\n");
}

TEST_F(CLITest, FailedInstallKeepsTheConfigurationChange)
{
    loginError = "systemctl said no";
    EXPECT_EQ(run({"install", hangul}), 1);
    EXPECT_EQ(stderrText(), "systemctl said no\n");
    EXPECT_EQ(stored->sourceID, hangul);
    EXPECT_TRUE(stored->enabled);
}

TEST_F(CLITest, UninstallNamesTheConfigurationFileItLeaves)
{
    login = true;
    EXPECT_EQ(run({"uninstall"}), 0);
    EXPECT_EQ(stdoutText(),
              L10n::text("cli.msg.uninstalled").arg("/home/u/Library/Application Support/Tolvar/config.json") + "\n");
    EXPECT_FALSE(login);
}

TEST_F(CLITest, KeepingCommandsReportTheNewStatus)
{
    EXPECT_EQ(run({"pause", "--json"}), 0);
    EXPECT_FALSE(stored->enabled);
    EXPECT_EQ(document()["status"].toObject()["state"].toString(), "paused");
    EXPECT_EQ(run({"toggle"}), 0);
    EXPECT_TRUE(stored->enabled);
    EXPECT_TRUE(stdoutText().startsWith(
        L10n::text("cli.line").arg(L10n::text("cli.label.state"), L10n::text("state.waiting"))));
}

// Every way to fail: exactly one report, on the stream its mode calls for.
struct FailureCase
{
    const char *name;
    std::function<void(CLITest &)> arrange;
    QStringList arguments;
    AutomationFailure failure;
    std::function<QString()> human;
    std::function<void(const CLITest &)> check = [](const CLITest &) {};
};

class CLIFailureTest : public CLITest, public testing::WithParamInterface<FailureCase>
{
};

TEST_P(CLIFailureTest, OneReportAndStatusOne)
{
    GetParam().arrange(*this);
    const std::optional<Config> before = stored;

    EXPECT_EQ(run(GetParam().arguments), 1);
    EXPECT_TRUE(stdoutText().isEmpty());
    EXPECT_EQ(stderrText(), GetParam().human() + "\n");

    stored = before;
    GetParam().arrange(*this);
    EXPECT_EQ(run(QStringList(GetParam().arguments) << "--json"), 1);
    EXPECT_TRUE(stderrText().isEmpty());
    EXPECT_EQ(out.data().count('\n'), 1);
    EXPECT_FALSE(document()["ok"].toBool(true));
    EXPECT_EQ(document()["command"].toString(), GetParam().arguments.value(0, "status"));
    EXPECT_EQ(document()["error"].toObject()["code"].toString(), GetParam().failure.code);
    EXPECT_EQ(document()["error"].toObject()["message"].toString(), GetParam().failure.message);
    GetParam().check(*this);
}

INSTANTIATE_TEST_SUITE_P(
    CLI, CLIFailureTest,
    testing::Values(
        FailureCase{
            "SetUnknownSource",
            [](CLITest &) {},
            {"set", "xkb:fr::fra"},
            AutomationFailure::missingSource(),
            [] { return L10n::text("warn.missing"); },
            [](const CLITest &fixture) { EXPECT_EQ(fixture.stored->sourceID, us) << "configuration unchanged"; }},
        FailureCase{"SetOnCorruptFile",
                    [](CLITest &fixture) { fixture.corrupt = true; },
                    {"set", hangul},
                    AutomationFailure::invalidConfig(),
                    [] { return L10n::text("cli.err.config").arg("bad"); }},
        FailureCase{"SetUnwritable",
                    [](CLITest &fixture) { fixture.unwritable = true; },
                    {"set", hangul},
                    AutomationFailure::configWriteFailed(),
                    [] { return L10n::text("cli.err.write").arg(Error::posix(ELOOP, "config.lock").description()); }},
        FailureCase{"ListWithoutInputMethod",
                    [](CLITest &fixture) { fixture.availability = InputSources::Availability::notRunning; },
                    {"list"},
                    AutomationFailure::inputMethodNotRunning("IBus"),
                    [] { return L10n::text("cli.err.im-absent").arg("IBus"); }},
        FailureCase{
            "SetWhileInputMethodIsSilent",
            [](CLITest &fixture) { fixture.availability = InputSources::Availability::notAnswering; },
            {"set", hangul},
            AutomationFailure::inputMethodNotAnswering("IBus"),
            [] { return L10n::text("cli.err.im-silent").arg("IBus"); },
            [](const CLITest &fixture) { EXPECT_EQ(fixture.stored->sourceID, us) << "configuration unchanged"; }},
        FailureCase{"ApplyWithoutFile",
                    [](CLITest &fixture) { fixture.stored.reset(); },
                    {"apply"},
                    AutomationFailure::noTarget(),
                    [] { return L10n::text("cli.err.no-pin"); }},
        FailureCase{"ApplyOnCorruptFile",
                    [](CLITest &fixture) { fixture.corrupt = true; },
                    {"apply"},
                    AutomationFailure::invalidConfig(),
                    [] { return L10n::text("cli.err.config").arg("bad"); }},
        FailureCase{"ApplyWithEmptyPin",
                    [](CLITest &fixture) { fixture.stored->sourceID = QString(); },
                    {"apply"},
                    AutomationFailure::noTarget(),
                    [] { return L10n::text("cli.err.no-pin"); }},
        FailureCase{"ApplyUninstalledPin",
                    [](CLITest &fixture) { fixture.stored->sourceID = "gone"; },
                    {"apply"},
                    AutomationFailure::missingSource(),
                    [] { return L10n::text("warn.missing"); }},
        FailureCase{"SwitchFailed",
                    [](CLITest &fixture) { fixture.outcome = SwitchOutcome::failed("it broke"); },
                    {"apply"},
                    AutomationFailure::switchFailed(),
                    [] { return QString("it broke"); }},
        FailureCase{"SwitchNeverReported",
                    [](CLITest &fixture) { fixture.outcome.reset(); },
                    {"set", hangul},
                    AutomationFailure::switchEndedWithoutResult(),
                    [] { return AutomationFailure::switchEndedWithoutResult().message; }},
        FailureCase{"SwitchBusy",
                    [](CLITest &fixture) { fixture.outcome = SwitchOutcome::busy(); },
                    {"apply"},
                    AutomationFailure::busy(),
                    [] { return L10n::text("warn.busy"); }},
        FailureCase{"SwitchSecure",
                    [](CLITest &fixture) { fixture.outcome = SwitchOutcome::secureInput(); },
                    {"apply"},
                    AutomationFailure::secureInput(),
                    [] { return L10n::text("enf.secure"); }},
        FailureCase{"SwitchFoundNoSource",
                    [](CLITest &fixture) { fixture.outcome = SwitchOutcome::missingSource(); },
                    {"apply"},
                    AutomationFailure::missingSourceAfterSwitch(),
                    [] { return L10n::text("warn.missing"); }},
        FailureCase{"ResumeWithoutPin",
                    [](CLITest &fixture) { fixture.stored = Config{}; },
                    {"resume"},
                    AutomationFailure::noTarget(),
                    [] { return L10n::text("cli.err.no-pin"); },
                    [](const CLITest &fixture) { EXPECT_FALSE(fixture.stored->enabled); }},
        FailureCase{"InstallWithoutTheGnomeExtensionTurnsItOnFirst",
                    [](CLITest &fixture) { fixture.availability = InputSources::Availability::extensionMissing; },
                    {"install", hangul},
                    AutomationFailure::gnomeExtensionMissing(),
                    [] { return L10n::text("cli.err.gnome-extension-enabled"); },
                    [](const CLITest &fixture) {
                        EXPECT_EQ(fixture.companionEnables, 2) << "once per run";
                        EXPECT_FALSE(fixture.login);
                    }},
        FailureCase{"StatusOnCorruptFile",
                    [](CLITest &fixture) { fixture.corrupt = true; },
                    {"status"},
                    AutomationFailure::invalidConfig(),
                    [] { return L10n::text("cli.err.config").arg("bad"); }},
        FailureCase{"UninstallFails",
                    [](CLITest &fixture) { fixture.loginError = "no manager"; },
                    {"uninstall"},
                    AutomationFailure::uninstallFailed(),
                    [] { return QString("no manager"); }},
        FailureCase{"OpenOutsideTheBundle",
                    [](CLITest &fixture) { fixture.openFailure = AutomationFailure::notAppBundle(); },
                    {"open"},
                    AutomationFailure::notAppBundle(),
                    [] { return L10n::text("cli.err.not-app"); }},
        FailureCase{"OpenCannotStart",
                    [](CLITest &fixture) { fixture.openFailure = AutomationFailure::openFailed(); },
                    {"open"},
                    AutomationFailure::openFailed(),
                    [] { return L10n::text("cli.err.open").arg(AutomationFailure::openFailed().message); }}),
    ParamName());

TEST_F(CLITest, RuntimeProbeFailureIsNamed)
{
    CLIServices broken = services();
    broken.automation.running = []() -> Expected<bool> { return Error::posix(EIO, "gui.lock"); };
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    EXPECT_EQ(CLI(broken, out, err).run({"status"}), 1);
    EXPECT_EQ(QString::fromUtf8(err.data()),
              L10n::text("cli.err.runtime-detail").arg(Error::posix(EIO, "gui.lock").description()) + "\n");
}

} // namespace
