// The panel and the setup flow in the states a person meets, each on a model
// of its own over a world held in memory.
#include "Scene.h"

#include "app/model/AppModel.h"
#include "app/model/PreviewWorld.h"
#include "app/panel/Panel.h"
#include "app/ui/controls/SearchField.h"
#include "app/ui/look/Identifiers.h"
#include "core/l10n/L10n.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QVBoxLayout>

#include <memory>

namespace {

// The first `count` of thirty sources, as desktops name and draw them.
QList<PreviewWorld::Source> sources(int count)
{
    static const QList<PreviewWorld::Source> all{
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
    return all.mid(0, count);
}

// Five sources, a Korean one pinned, kept and current, and Tolvar opening at login.
PreviewWorld standard()
{
    PreviewWorld world;
    world.sources = sources(5);
    world.config = Config{.sourceID = QStringLiteral("hangul"), .enabled = true, .onboardingCompleted = true};
    world.current = QStringLiteral("hangul");
    world.login = true;
    return world;
}

struct Shot
{
    QWidget *holder;
    AppModel *model;
    Panel *panel;
    std::shared_ptr<PreviewWorld> world;
};

using Prepare = std::function<void(AppModel &, PreviewWorld &)>;

// `prepare` runs before the panel exists, so that it opens on that state as a
// person would find it, without the transitions that follow a change.
Shot shot(const PreviewWorld &settings, const Prepare &prepare = {}, bool inWindow = false, int maximumHeight = 900)
{
    auto world = std::make_shared<PreviewWorld>(settings);
    // The model would otherwise set the language the configuration names.
    world->language = L10n::activeLanguage();
    auto *holder = new QWidget;
    holder->setAutoFillBackground(true);
    auto *model = new AppModel(AppServices::preview(world), holder);
    model->start();
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

QWidget *main(const PreviewWorld &world)
{
    return shot(world).holder;
}

PreviewWorld with(std::function<void(PreviewWorld &)> change)
{
    PreviewWorld world = standard();
    change(world);
    return world;
}

const Scene::Registration keeping("panel-keeping", [](const Scene::Context &) { return main(standard()); });

const Scene::Registration paused("panel-paused", [](const Scene::Context &) {
    return main(with([](PreviewWorld &w) { w.config->enabled = false; }));
});

const Scene::Registration switching("panel-switching", [](const Scene::Context &) {
    const Shot s = shot(with([](PreviewWorld &w) { w.applyOutcome.reset(); }));
    s.model->apply();
    return s.holder;
});

const Scene::Registration waiting("panel-waiting", [](const Scene::Context &) {
    return main(with([](PreviewWorld &w) { w.current = QStringLiteral("xkb:us::eng"); }));
});

const Scene::Registration missing("panel-missing-source", [](const Scene::Context &) {
    return main(with([](PreviewWorld &w) { w.config->sourceID = QStringLiteral("xkb:gone::ger"); }));
});

const Scene::Registration configError("panel-config-error", [](const Scene::Context &) {
    return main(with([](PreviewWorld &w) { w.unreadable = true; }));
});

const Scene::Registration retry("panel-warning-retry", [](const Scene::Context &) {
    const Shot s = shot(with([](PreviewWorld &w) {
        w.applyOutcome = SwitchOutcome::failed(LocalizedText("cli.err.im-silent", {QStringLiteral("IBus")}));
    }));
    s.model->apply();
    return s.holder;
});

const Scene::Registration secure("panel-secure-input", [](const Scene::Context &) {
    const Shot s = shot(with([](PreviewWorld &w) {
        w.secure = true;
        w.current = QStringLiteral("xkb:us::eng");
    }));
    s.model->receiveAutomaticOutcome(SwitchOutcome::secureInput());
    return s.holder;
});

const Scene::Registration three("panel-3-sources", [](const Scene::Context &) {
    return main(with([](PreviewWorld &w) { w.sources = sources(3); }));
});

const Scene::Registration thirty("panel-30-sources", [](const Scene::Context &) {
    return main(with([](PreviewWorld &w) { w.sources = sources(30); }));
});

const Scene::Registration noResults("panel-no-results", [](const Scene::Context &) {
    const Shot s = shot(with([](PreviewWorld &w) { w.sources = sources(30); }));
    find<QLineEdit>(s, Identifier::sourceSearch)->setText(QStringLiteral("Klingon"));
    return s.holder;
});

const Scene::Registration overflow("panel-window-overflow", [](const Scene::Context &) {
    PreviewWorld world = standard();
    world.sources = sources(30);
    world.applyOutcome = SwitchOutcome::failed(LocalizedText("cli.err.im-silent", {QStringLiteral("IBus")}));
    const Shot s = shot(world, {}, true, 420);
    s.model->apply();
    return s.holder;
});

const Scene::Registration settings("settings", [](const Scene::Context &) {
    const Shot s = shot(standard());
    s.panel->openSettings();
    find(s, Identifier::keepingHelp)->click();
    return s.holder;
});

const Scene::Registration settingsBusy("settings-login-busy", [](const Scene::Context &) {
    const Shot s = shot(with([](PreviewWorld &w) {
        // Long enough for the picture to be taken while it runs.
        w.loginTakes = std::chrono::milliseconds(1500);
        w.current = QStringLiteral("xkb:gone::ger");
        w.config->sourceID = QStringLiteral("xkb:gone::ger");
    }));
    s.panel->openSettings();
    s.model->setLogin(false);
    return s.holder;
});

const Scene::Registration about("panel-about", [](const Scene::Context &) {
    const Shot s = shot(standard());
    s.panel->setPage(PanelPage::about);
    return s.holder;
});

const Scene::Registration setupChoose("setup-choose", [](const Scene::Context &) {
    return shot(with([](PreviewWorld &w) {
               w.config.reset();
               w.login = false;
           }))
        .holder;
});

const Scene::Registration setupChooseMany("setup-choose-30", [](const Scene::Context &) {
    return shot(with([](PreviewWorld &w) {
                    w.config.reset();
                    w.sources = sources(30);
                }),
                [](AppModel &model, PreviewWorld &) { model.setSetupSourceID(QStringLiteral("anthy")); })
        .holder;
});

const Scene::Registration setupConfirm("setup-confirm", [](const Scene::Context &) {
    return shot(with([](PreviewWorld &w) {
                    w.config.reset();
                    w.login = false;
                }),
                [](AppModel &model, PreviewWorld &) {
                    model.setSetupSourceID(QStringLiteral("anthy"));
                    model.setSetupStep(1);
                })
        .holder;
});

const Scene::Registration setupReopened("setup-reopened-source-gone", [](const Scene::Context &) {
    return shot(with([](PreviewWorld &w) { w.config->sourceID = QStringLiteral("xkb:gone::ger"); }),
                [](AppModel &model, PreviewWorld &) {
                    model.beginSetup();
                    model.setSetupStep(1);
                })
        .holder;
});

const Scene::Registration setupWindow("setup-window-config-error", [](const Scene::Context &) {
    PreviewWorld world = standard();
    world.config.reset();
    return shot(
               world,
               [](AppModel &model, PreviewWorld &w) {
                   model.setSetupSourceID(QStringLiteral("hangul"));
                   // The file turned unreadable while the flow was open.
                   w.unreadable = true;
                   model.refresh();
               },
               true)
        .holder;
});

} // namespace
