#include "core/cli/CLI.h"
#include "core/config/L10n.h"
#include "support/FakeAutomationServices.h"
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
    void SetUp() override
    {
        L10n::setLanguageCode(QStringLiteral("en"));
        fake.stored = Config{us, true, std::nullopt, true};
        fake.current = {hangul, "Korean"};
    }
    void TearDown() override { L10n::setLanguageCode(std::nullopt); }

    CLIServices services()
    {
        CLIServices s;
        s.automation = fake.services();
        s.enableCompanion = [this] {
            ++companionEnables;
            return companionTurnsOn;
        };
        s.switchOnce = [this]() -> std::optional<SwitchOutcome> {
            if (outcome && *outcome == SwitchOutcome::success() && fake.stored)
                fake.current = {*fake.stored->sourceID, *fake.stored->sourceID == us ? "English (US)" : "Korean"};
            return outcome;
        };
        s.installLogin = [this](const QString &executable) -> Expected<void, QString> {
            installedFor = executable;
            if (loginError)
                return *loginError;
            fake.login = true;
            return {};
        };
        s.uninstallLogin = [this]() -> Expected<void, QString> {
            if (loginError)
                return *loginError;
            fake.login = false;
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

    FakeAutomationServices fake;
    bool companionTurnsOn = true;
    int companionEnables = 0;
    std::optional<SwitchOutcome> outcome = SwitchOutcome::success();
    std::optional<QString> loginError;
    std::optional<AutomationFailure> openFailure;
    QString installedFor;
    QBuffer out;
    QBuffer err;
};

TEST_F(CLITest, InstallPinsKeepsAndSaysSo)
{
    fake.stored = std::nullopt;
    EXPECT_EQ(run({"install", hangul}), 0);
    EXPECT_EQ(fake.stored, (Config{hangul, true, std::nullopt, true}));
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
    EXPECT_EQ(fake.stored->sourceID, hangul);
    EXPECT_TRUE(fake.stored->enabled);
}

TEST_F(CLITest, UninstallNamesTheConfigurationFileItLeaves)
{
    fake.login = true;
    EXPECT_EQ(run({"uninstall"}), 0);
    EXPECT_EQ(stdoutText(),
              L10n::text("cli.msg.uninstalled").arg("/home/u/Library/Application Support/Tolvar/config.json") + "\n");
    EXPECT_FALSE(fake.login);
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
    const std::optional<Config> before = fake.stored;

    EXPECT_EQ(run(GetParam().arguments), 1);
    EXPECT_TRUE(stdoutText().isEmpty());
    EXPECT_EQ(stderrText(), GetParam().human() + "\n");

    fake.stored = before;
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
        FailureCase{"SetUnwritable",
                    [](CLITest &fixture) { fixture.fake.writeError = Error::posix(ELOOP, "config.lock"); },
                    {"set", hangul},
                    AutomationFailure::configWriteFailed(),
                    [] { return L10n::text("cli.err.write").arg(Error::posix(ELOOP, "config.lock").description()); }},
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
                    [](CLITest &fixture) { fixture.fake.stored = Config{}; },
                    {"resume"},
                    AutomationFailure::noTarget(),
                    [] { return L10n::text("cli.err.no-pin"); },
                    [](const CLITest &fixture) { EXPECT_FALSE(fixture.fake.stored->enabled); }},
        FailureCase{"InstallWithoutTheGnomeExtensionTurnsItOnFirst",
                    [](CLITest &fixture) { fixture.fake.availability = InputSources::Availability::extensionMissing; },
                    {"install", hangul},
                    AutomationFailure::gnomeExtensionMissing(),
                    [] { return L10n::text("cli.err.gnome-extension-enabled"); },
                    [](const CLITest &fixture) {
                        EXPECT_EQ(fixture.companionEnables, 2) << "once per run";
                        EXPECT_FALSE(fixture.fake.login);
                    }},
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
    fake.running.reset();
    EXPECT_EQ(run({"status"}), 1);
    EXPECT_EQ(stderrText(),
              L10n::text("cli.err.runtime-detail").arg(Error::posix(EIO, "gui.lock").description()) + "\n");
}

} // namespace
