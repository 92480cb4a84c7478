// The panel and the setup flow in the states a person meets, each on a model
// of its own over a world held in memory.
#include "Scene.h"

#include "app/model/AppModel.h"
#include "app/panel/Panel.h"
#include "app/ui/controls/SearchField.h"
#include "app/ui/look/Identifiers.h"
#include "core/engine/Enforcer.h"
#include "core/l10n/L10n.h"
#include "core/sources/SourceIcon.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QThread>
#include <QVBoxLayout>

#include <memory>

namespace {

const QList<std::pair<InputChoice, QString>> &catalog()
{
    static const QList<std::pair<InputChoice, QString>> all{
        {{QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")}, QStringLiteral("EN")},
        {{QStringLiteral("hangul"), QStringLiteral("Korean (Hangul)")}, QStringLiteral("한")},
        {{QStringLiteral("anthy"), QStringLiteral("Japanese (Anthy)")}, QStringLiteral("あ")},
        {{QStringLiteral("xkb:de:nodeadkeys:ger"), QStringLiteral("German (Switzerland, no dead keys, Macintosh)")},
         QStringLiteral("DE")},
        {{QStringLiteral("libpinyin"), QStringLiteral("中文 - 拼音")}, QStringLiteral("拼")},
        {{QStringLiteral("xkb:fr::fra"), QStringLiteral("French")}, QStringLiteral("FR")},
        {{QStringLiteral("xkb:es::spa"), QStringLiteral("Spanish")}, QStringLiteral("ES")},
        {{QStringLiteral("xkb:ru::rus"), QStringLiteral("Russian")}, QStringLiteral("RU")},
        {{QStringLiteral("xkb:gr::gre"), QStringLiteral("Greek")}, QStringLiteral("GR")},
        {{QStringLiteral("xkb:ara::ara"), QStringLiteral("Arabic")}, QStringLiteral("AR")},
        {{QStringLiteral("xkb:il::heb"), QStringLiteral("Hebrew")}, QStringLiteral("HE")},
        {{QStringLiteral("xkb:th::tha"), QStringLiteral("Thai")}, QStringLiteral("TH")},
        {{QStringLiteral("Unikey"), QStringLiteral("Vietnamese (Telex)")}, QStringLiteral("VI")},
        {{QStringLiteral("xkb:in::hin"), QStringLiteral("Hindi (InScript)")}, QStringLiteral("HI")},
        {{QStringLiteral("xkb:ua::ukr"), QStringLiteral("Ukrainian")}, QStringLiteral("UK")},
        {{QStringLiteral("xkb:pl::pol"), QStringLiteral("Polish")}, QStringLiteral("PL")},
        {{QStringLiteral("xkb:cz::cze"), QStringLiteral("Czech")}, QStringLiteral("CZ")},
        {{QStringLiteral("xkb:tr::tur"), QStringLiteral("Turkish")}, QStringLiteral("TR")},
        {{QStringLiteral("xkb:se::swe"), QStringLiteral("Swedish")}, QStringLiteral("SE")},
        {{QStringLiteral("xkb:no::nor"), QStringLiteral("Norwegian")}, QStringLiteral("NO")},
        {{QStringLiteral("xkb:dk::dan"), QStringLiteral("Danish")}, QStringLiteral("DK")},
        {{QStringLiteral("xkb:fi::fin"), QStringLiteral("Finnish")}, QStringLiteral("FI")},
        {{QStringLiteral("xkb:nl::nld"), QStringLiteral("Dutch")}, QStringLiteral("NL")},
        {{QStringLiteral("xkb:br::por"), QStringLiteral("Portuguese (Brazil)")}, QStringLiteral("BR")},
        {{QStringLiteral("xkb:it::ita"), QStringLiteral("Italian")}, QStringLiteral("IT")},
        {{QStringLiteral("xkb:hu::hun"), QStringLiteral("Hungarian")}, QStringLiteral("HU")},
        {{QStringLiteral("xkb:ro::rum"), QStringLiteral("Romanian")}, QStringLiteral("RO")},
        {{QStringLiteral("xkb:bg::bul"), QStringLiteral("Bulgarian")}, QStringLiteral("BG")},
        {{QStringLiteral("xkb:rs::srp"), QStringLiteral("Serbian")}, QStringLiteral("SR")},
        {{QStringLiteral("chewing"), QStringLiteral("中文 - 酷音")}, QStringLiteral("酷")},
    };
    return all;
}

// A desktop as one scene needs it; the model over it owns it.
struct World
{
    int sourceCount = 5;
    std::optional<Config> config =
        Config{.sourceID = QStringLiteral("hangul"), .enabled = true, .onboardingCompleted = true};
    QString current = QStringLiteral("hangul");
    bool login = true;
    bool secure = false;
    bool unreadable = false;
    bool loginTakesAWhile = false;
    // What a manual switch ends in; none leaves it running.
    std::optional<SwitchOutcome> applyOutcome = SwitchOutcome::success();
    // The language the picture is taken in, which the model would otherwise reset.
    QString language;

    QList<InputChoice> sources() const
    {
        QList<InputChoice> list;
        for (int i = 0; i < sourceCount; ++i)
            list << catalog().at(i).first;
        return list;
    }

    AppServices services(const std::shared_ptr<World> &self) const
    {
        AppServices s;
        s.load = [self]() -> Expected<Config> {
            if (self->unreadable)
                return Error::decode(QStringLiteral("not JSON"));
            Config stored = self->config.value_or(Config{});
            stored.language = self->language;
            return stored;
        };
        s.save = [self](const Config &written) -> Expected<void> {
            self->config = written;
            return {};
        };
        s.choices = [self] { return self->sources(); };
        s.current = [self] {
            for (const InputChoice &choice : self->sources())
                if (choice.id == self->current)
                    return choice;
            return InputChoice{};
        };
        s.loginEnabled = [self] { return self->login; };
        s.setLogin = [self](bool on) -> Expected<void> {
            // Long enough for the picture to be taken while it runs.
            if (self->loginTakesAWhile)
                QThread::msleep(1500);
            self->login = on;
            return {};
        };
        s.apply = [self](const AppServices::Completion &completion) {
            if (self->applyOutcome)
                completion(*self->applyOutcome);
        };
        s.secureInput = [self] { return self->secure; };
        s.isSwitching = [] { return false; };
        s.cancelSwitch = [] {};
        s.sourceIcon = [](const QString &id) -> std::optional<QImage> {
            for (const auto &[choice, symbol] : catalog())
                if (choice.id == id)
                    return SourceIcon::fromSymbol(symbol);
            return std::nullopt;
        };
        return s;
    }
};

// An engine that is never started: a model on it does its login work in the
// background, as the running application does.
Enforcer &idleEngine()
{
    static Enforcer engine{EnforcementDependencies{}};
    return engine;
}

struct Shot
{
    QWidget *holder;
    AppModel *model;
    Panel *panel;
    std::shared_ptr<World> world;
};

using Prepare = std::function<void(AppModel &, World &)>;

// `prepare` runs before the panel exists, so that it opens on that state as a
// person would find it, without the transitions that follow a change.
Shot shot(const World &settings, const Prepare &prepare = {}, bool inWindow = false, int maximumHeight = 900)
{
    auto world = std::make_shared<World>(settings);
    world->language = L10n::activeLanguage();
    auto *holder = new QWidget;
    holder->setAutoFillBackground(true);
    auto *model = new AppModel(world->services(world), world->loginTakesAWhile ? &idleEngine() : nullptr, holder);
    // The idle engine is never started.
    if (model->isPreview())
        model->start();
    else
        model->refresh();
    if (prepare)
        prepare(*model, *world);
    auto *panel = new Panel(*model, inWindow, maximumHeight, holder);
    auto *column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(panel);
    return {holder, model, panel, world};
}

template <typename T = QAbstractButton> T *find(const Shot &shot, const char *identifier)
{
    return shot.panel->findChild<T *>(QLatin1String(identifier));
}

QWidget *main(const World &world)
{
    return shot(world).holder;
}

World with(std::function<void(World &)> change)
{
    World world;
    change(world);
    return world;
}

const Scene::Registration keeping("panel-keeping", [](const Scene::Context &) { return main({}); });

const Scene::Registration paused("panel-paused", [](const Scene::Context &) {
    return main(with([](World &w) { w.config->enabled = false; }));
});

const Scene::Registration switching("panel-switching", [](const Scene::Context &) {
    const Shot s = shot(with([](World &w) { w.applyOutcome.reset(); }));
    s.model->apply();
    return s.holder;
});

const Scene::Registration waiting("panel-waiting", [](const Scene::Context &) {
    return main(with([](World &w) { w.current = QStringLiteral("xkb:us::eng"); }));
});

const Scene::Registration missing("panel-missing-source", [](const Scene::Context &) {
    return main(with([](World &w) { w.config->sourceID = QStringLiteral("xkb:gone::ger"); }));
});

const Scene::Registration configError("panel-config-error", [](const Scene::Context &) {
    return main(with([](World &w) { w.unreadable = true; }));
});

const Scene::Registration retry("panel-warning-retry", [](const Scene::Context &) {
    const Shot s = shot(with([](World &w) {
        w.applyOutcome = SwitchOutcome::failed(LocalizedText("cli.err.im-silent", {QStringLiteral("IBus")}));
    }));
    s.model->apply();
    return s.holder;
});

const Scene::Registration secure("panel-secure-input", [](const Scene::Context &) {
    const Shot s = shot(with([](World &w) {
        w.secure = true;
        w.current = QStringLiteral("xkb:us::eng");
    }));
    s.model->receiveAutomaticOutcome(SwitchOutcome::secureInput());
    return s.holder;
});

const Scene::Registration three("panel-3-sources",
                                [](const Scene::Context &) { return main(with([](World &w) { w.sourceCount = 3; })); });

const Scene::Registration thirty("panel-30-sources", [](const Scene::Context &) {
    return main(with([](World &w) { w.sourceCount = 30; }));
});

const Scene::Registration noResults("panel-no-results", [](const Scene::Context &) {
    const Shot s = shot(with([](World &w) { w.sourceCount = 30; }));
    find<QLineEdit>(s, Identifier::sourceSearch)->setText(QStringLiteral("Klingon"));
    return s.holder;
});

const Scene::Registration overflow("panel-window-overflow", [](const Scene::Context &) {
    World world;
    world.sourceCount = 30;
    world.applyOutcome = SwitchOutcome::failed(LocalizedText("cli.err.im-silent", {QStringLiteral("IBus")}));
    const Shot s = shot(world, {}, true, 420);
    s.model->apply();
    return s.holder;
});

const Scene::Registration settings("settings", [](const Scene::Context &) {
    const Shot s = shot({});
    s.panel->openSettings();
    find(s, Identifier::keepingHelp)->click();
    return s.holder;
});

const Scene::Registration settingsBusy("settings-login-busy", [](const Scene::Context &) {
    const Shot s = shot(with([](World &w) {
        w.loginTakesAWhile = true;
        w.current = QStringLiteral("xkb:gone::ger");
        w.config->sourceID = QStringLiteral("xkb:gone::ger");
    }));
    s.panel->openSettings();
    s.model->setLogin(false);
    return s.holder;
});

const Scene::Registration about("panel-about", [](const Scene::Context &) {
    const Shot s = shot({});
    s.panel->setPage(PanelPage::about);
    return s.holder;
});

const Scene::Registration setupChoose("setup-choose", [](const Scene::Context &) {
    return shot(with([](World &w) {
               w.config.reset();
               w.login = false;
           }))
        .holder;
});

const Scene::Registration setupChooseMany("setup-choose-30", [](const Scene::Context &) {
    return shot(with([](World &w) {
                    w.config.reset();
                    w.sourceCount = 30;
                }),
                [](AppModel &model, World &) { model.setSetupSourceID(QStringLiteral("anthy")); })
        .holder;
});

const Scene::Registration setupConfirm("setup-confirm", [](const Scene::Context &) {
    return shot(with([](World &w) {
                    w.config.reset();
                    w.login = false;
                }),
                [](AppModel &model, World &) {
                    model.setSetupSourceID(QStringLiteral("anthy"));
                    model.setSetupStep(1);
                })
        .holder;
});

const Scene::Registration setupReopened("setup-reopened-source-gone", [](const Scene::Context &) {
    return shot(with([](World &w) { w.config->sourceID = QStringLiteral("xkb:gone::ger"); }),
                [](AppModel &model, World &) {
                    model.beginSetup();
                    model.setSetupStep(1);
                })
        .holder;
});

const Scene::Registration setupWindow("setup-window-config-error", [](const Scene::Context &) {
    World world;
    world.config.reset();
    return shot(
               world,
               [](AppModel &model, World &w) {
                   model.setSetupSourceID(QStringLiteral("hangul"));
                   // The file turned unreadable while the flow was open.
                   w.unreadable = true;
                   model.refresh();
               },
               true)
        .holder;
});

} // namespace
