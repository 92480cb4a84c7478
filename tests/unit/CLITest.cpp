#include "core/cli/CLI.h"
#include "core/cli/CLIRequest.h"
#include "core/l10n/L10n.h"
#include "support/FakeAutomationServices.h"
#include "support/ParamName.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

const QString configFile = "/home/u/.config/tolvar/config.json";

// The command line over stand-ins for what it drives; the branches the real executable cannot reach.
class CLITest : public testing::Test
{
public:
    void SetUp() override
    {
        L10n::setLanguageCode(QStringLiteral("en"));
        fake.stored = Config{.sourceID = "xkb:us::eng", .enabled = true, .onboardingCompleted = true};
    }
    void TearDown() override { L10n::setLanguageCode(std::nullopt); }

    int run(const QString &line)
    {
        CLIServices s;
        s.automation = fake.services();
        s.enableCompanion = [] { return true; };
        s.switchOnce = [this] { return outcome; };
        s.installLogin = [this](const QString &executable) {
            installedFor = executable;
            return login(true);
        };
        s.uninstallLogin = [this] { return login(false); };
        s.openApp = [this] { return openFailure ? Opened(*openFailure) : Opened(); };
        s.executablePath = [] { return QStringLiteral("/opt/tolvar/bin/tolvar"); };
        s.configFile = [] { return configFile; };
        s.buildInfo = [this] { return build; };
        out.setData({});
        err.setData({});
        out.open(QIODevice::WriteOnly);
        err.open(QIODevice::WriteOnly);
        const int status = CLI(s, out, err).run(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        out.close();
        err.close();
        return status;
    }

    using Opened = Expected<void, AutomationFailure>;
    Expected<void, QString> login(bool on)
    {
        if (loginError)
            return *loginError;
        fake.login = on;
        return {};
    }

    QJsonObject error() const { return QJsonDocument::fromJson(out.data()).object()["error"].toObject(); }

    FakeAutomationServices fake;
    std::optional<SwitchOutcome> outcome = SwitchOutcome::success();
    std::optional<QString> loginError;
    std::optional<AutomationFailure> openFailure;
    QString installedFor;
    AppBuildInfo build;
    QBuffer out;
    QBuffer err;
};

// Whatever the build record lacks is left out, never made up.
TEST_F(CLITest, VersionSaysWhatTheBuildRecordHolds)
{
    using Row = std::tuple<AppBuildInfo, const char *, const char *>;
    // clang-format off
    const Row rows[] = {
        {{.version = "1.2.0", .build = 42}, "--version", "Tolvar 1.2.0 (build 42)"},
        {{.version = "1.2.0"}, "version", "Tolvar 1.2.0 (development build)"},
        {{}, "version", "Tolvar (unknown version)"},
        {{.version = "1.2.0", .build = 42}, "version --json",
         R"({"build":42,"command":"version","ok":true,"schemaVersion":1,"version":"1.2.0"})"},
        {{.build = 7}, "--version --json", R"({"build":7,"command":"version","ok":true,"schemaVersion":1})"}};
    // clang-format on
    fake.stored.reset();
    for (const auto &[info, line, printed] : rows) {
        build = info;
        EXPECT_EQ(run(line), 0) << line;
        EXPECT_EQ(out.data(), QByteArray(printed) + "\n") << line;
        EXPECT_TRUE(err.data().isEmpty()) << line;
    }
    EXPECT_FALSE(fake.stored) << "the version wrote a configuration";
}

TEST_F(CLITest, InstallAndUninstallSayWhatTheyDid)
{
    fake.stored.reset();
    EXPECT_EQ(run("install hangul"), 0);
    EXPECT_EQ(fake.stored, (Config{.sourceID = "hangul", .enabled = true, .onboardingCompleted = true}));
    EXPECT_EQ(installedFor, "/opt/tolvar/bin/tolvar");
    EXPECT_EQ(out.data(), (L10n::text("cli.msg.pinned").arg("hangul") + "\n"
                           + L10n::text("cli.msg.login").arg(L10n::text("app.name")) + "\n")
                              .toUtf8());
    EXPECT_EQ(run("uninstall"), 0);
    EXPECT_EQ(out.data(), (L10n::text("cli.msg.uninstalled").arg(configFile) + "\n").toUtf8());
    EXPECT_FALSE(fake.login);
}

// Every way to fail: status 1 and exactly one report, on the stream its mode calls for.
struct FailureCase
{
    const char *name;
    std::function<void(CLITest &)> arrange;
    const char *command;
    AutomationFailure failure;
    QString human;
    std::function<void(const CLITest &)> check = [](const CLITest &) {};
};

struct CLIFailureTest : CLITest, testing::WithParamInterface<FailureCase>
{
};

TEST_P(CLIFailureTest, OneReportAndStatusOne)
{
    const FailureCase &row = GetParam();
    const std::optional<Config> before = fake.stored;
    row.arrange(*this);
    EXPECT_EQ(run(row.command), 1);
    EXPECT_TRUE(out.data().isEmpty());
    EXPECT_EQ(QString::fromUtf8(err.data()), row.human + "\n");

    fake.stored = before;
    row.arrange(*this);
    EXPECT_EQ(run(row.command + QStringLiteral(" --json")), 1);
    EXPECT_TRUE(err.data().isEmpty());
    EXPECT_EQ(out.data().count('\n'), 1);
    EXPECT_EQ(error()["code"].toString(), row.failure.code);
    EXPECT_EQ(error()["message"].toString(), row.failure.message);
    EXPECT_FALSE(fake.login);
    row.check(*this);
}

QString text(const char *key, const QString &argument = {})
{
    return argument.isEmpty() ? L10n::text(key) : L10n::text(key).arg(argument);
}

const Error locked = Error::posix(ELOOP, "config.lock");
const Error undecodable = Error::decode("bad");
const Error unreadable = Error::posix(EACCES, "config.json");
const Error probe = Error::posix(EIO, "gui.lock");
using F = AutomationFailure;
using O = SwitchOutcome;

// clang-format off
INSTANTIATE_TEST_SUITE_P(CLI, CLIFailureTest, testing::Values(
    FailureCase{"SetUnwritable", [](CLITest &test) { test.fake.writeError = locked; }, "set hangul",
                F::configWriteFailed(), text("cli.err.write", locked.description())},
    FailureCase{"PauseUndecodable", [](CLITest &test) { test.fake.loadError = undecodable; }, "pause",
                F::invalidConfig(), text("cli.err.config", undecodable.description())},
    FailureCase{"PauseUnreadable", [](CLITest &test) { test.fake.loadError = unreadable; }, "pause",
                F::configWriteFailed(), text("cli.err.write", unreadable.description())},
    FailureCase{"StatusUndecodable", [](CLITest &test) { test.fake.loadError = undecodable; }, "status",
                F::invalidConfig(), text("cli.err.config", undecodable.description())},
    FailureCase{"StatusProbeFails", [](CLITest &test) { test.fake.running.reset(); }, "status",
                F::runtimeUnavailable(), text("cli.err.runtime-detail", probe.description())},
    FailureCase{"SwitchFailed", [](CLITest &test) { test.outcome = O::failed(LocalizedText("enf.timeout")); }, "apply",
                F::switchFailed(), text("warn.switch", text("enf.timeout"))},
    FailureCase{"SwitchNeverReported", [](CLITest &test) { test.outcome.reset(); }, "set hangul",
                F::switchEndedWithoutResult(), text("cli.err.no-result")},
    FailureCase{"SwitchBusy", [](CLITest &test) { test.outcome = O::busy(); }, "apply", F::busy(), text("warn.busy")},
    FailureCase{"SwitchSecure", [](CLITest &test) { test.outcome = O::secureInput(); }, "apply",
                F::secureInput(), text("enf.secure")},
    FailureCase{"SetWhileARemoteClientHoldsTheKeymap", [](CLITest &test) { test.outcome = O::keymapHeld(); },
                "set hangul", F::keymapHeld(), text("enf.keymap-held")},
    FailureCase{"SwitchFoundNoSource", [](CLITest &test) { test.outcome = O::missingSource(); }, "apply",
                F::missingSourceAfterSwitch(), text("warn.missing")},
    FailureCase{"ResumeWithoutPin", [](CLITest &test) { test.fake.stored = Config{}; }, "resume",
                F::noTarget(), text("cli.err.no-pin"),
                [](const CLITest &test) { EXPECT_FALSE(test.fake.stored->enabled); }},
    FailureCase{"InstallWithTheGnomeExtensionOffTurnsItOnFirst",
                [](CLITest &test) { test.fake.availability = InputSources::Availability::extensionOff; },
                "install hangul",
                F::gnomeExtensionOff(), text("cli.err.gnome-extension-enabled"),
                [](const CLITest &test) { EXPECT_TRUE(test.installedFor.isEmpty()); }},
    // Turning on cannot help an extension the shell refuses: it says why instead.
    FailureCase{"InstallWithAnOutdatedGnomeExtension",
                [](CLITest &test) { test.fake.availability = InputSources::Availability::extensionOutdated; },
                "install hangul",
                F::of(F::Kind::GnomeExtensionOutdated), text("warn.gnome-extension-outdated")},
    FailureCase{"InstallFailureKeepsThePin", [](CLITest &test) { test.loginError = "systemctl said no"; },
                "install hangul",
                F::installFailed(), "systemctl said no",
                [](const CLITest &test) { EXPECT_EQ(test.fake.stored->sourceID, "hangul"); }},
    FailureCase{"UninstallFails", [](CLITest &test) { test.loginError = "no manager"; }, "uninstall",
                F::uninstallFailed(), "no manager"},
    FailureCase{"OpenOutsideTheBundle", [](CLITest &test) { test.openFailure = F::notAppBundle(); }, "open",
                F::notAppBundle(), text("cli.err.not-app")},
    FailureCase{"OpenCannotStart", [](CLITest &test) { test.openFailure = F::openFailed(); }, "open",
                F::openFailed(), text("cli.err.operation")}),
    ParamName());
// clang-format on

TEST(CLIRequestTest, AcceptsOrRefuses)
{
    using enum CLIRequest::Command;
    const QString id = "m17n:zh:py/x";
    // clang-format off
    const std::pair<QStringList, CLIRequest> accepted[] = {
        {{}, {Status, std::nullopt, false}}, {{"--json"}, {Status, std::nullopt, true}},
        {{"set", "--json", id}, {Set, id, true}}, {{"--json", "install", id}, {Install, id, true}},
        {{"-h"}, {Help, std::nullopt, false}}, {{"--help"}, {Help, std::nullopt, false}},
        {{"--version"}, {Version, std::nullopt, false}}, {{"version", "--json"}, {Version, std::nullopt, true}}};
    // clang-format on
    for (const auto &[arguments, expected] : accepted)
        EXPECT_EQ(CLIRequest::parse(arguments).value(), expected) << qPrintable(arguments.join(' '));
    // clang-format off
    const QList<QStringList> refused = {{"status", "--json", "--json"}, {"set"}, {"set", id, id}, {"set", "-x"},
        {"set", ""}, {"install"}, {"pause", "now"}, {"-h", "--json"}, {"help", "me"}, {"status", "--help"}, {"Status"},
        {"version", "now"}, {"status", "--version"},
        {""}, {"gui"}};
    // clang-format on
    for (const QStringList &arguments : refused) {
        const auto parsed = CLIRequest::parse(arguments);
        ASSERT_FALSE(parsed.ok()) << qPrintable(arguments.join(' '));
        // A refused line still answers as asked, naming the word it was given.
        EXPECT_EQ(parsed.error(), (CLIRequest::Refusal{arguments.first(), arguments.contains("--json")}));
    }
}

} // namespace
