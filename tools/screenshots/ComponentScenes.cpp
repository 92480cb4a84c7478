// The design system's components in their interesting states.
#include "Scene.h"

#include "app/ui/controls/Banner.h"
#include "app/ui/controls/IconButton.h"
#include "app/ui/controls/PanelHeader.h"
#include "app/ui/controls/QuietButton.h"
#include "app/ui/controls/RowButton.h"
#include "app/ui/controls/SearchField.h"
#include "app/ui/look/InsetDivider.h"
#include "app/ui/look/SettingIcon.h"
#include "app/ui/look/SourceArtwork.h"
#include "app/ui/look/Surface.h"
#include "app/ui/look/Symbols.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "app/ui/rows/SettingRow.h"
#include "app/ui/rows/SourceList.h"
#include "core/l10n/L10n.h"

#include <QApplication>
#include <QCheckBox>
#include <QEnterEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace {

QString t(const char *key)
{
    return L10n::text(key);
}

Theme theme()
{
    return Theme::fromPalette(QApplication::palette());
}

// Engines draw their icons as short text; so do these.
QImage textIcon(const QString &text)
{
    QImage image(48, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setFamilies({QStringLiteral("DejaVu Sans"), QStringLiteral("Noto Sans CJK JP")});
    font.setPixelSize(text.size() > 1 ? 22 : 30);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, text);
    return image;
}

const QList<std::pair<InputChoice, QString>> &catalog()
{
    static const QList<std::pair<InputChoice, QString>> sources{
        {{QStringLiteral("xkb:us::eng"), QStringLiteral("English (US)")}, QStringLiteral("EN")},
        {{QStringLiteral("xkb:de::ger"), QStringLiteral("German (no dead keys, with a very long layout name)")},
         QStringLiteral("DE")},
        {{QStringLiteral("anthy"), QStringLiteral("日本語 - Anthy")}, QStringLiteral("あ")},
        {{QStringLiteral("hangul"), QStringLiteral("한국어 - Hangul")}, QStringLiteral("한")},
        {{QStringLiteral("pinyin"), QStringLiteral("中文 - 拼音")}, QStringLiteral("拼")},
    };
    return sources;
}

SourceListContent listContent(int count, bool followSystem)
{
    SourceListContent content;
    for (int i = 0; i < count; ++i) {
        const auto &[choice, icon] = catalog().at(i % catalog().size());
        InputChoice copy = choice;
        if (i >= catalog().size())
            copy = {choice.id + QString::number(i), choice.name + QStringLiteral(" ") + QString::number(i)};
        content.sources << copy;
    }
    content.totalCount = count;
    content.selectedID = QStringLiteral("anthy");
    content.currentID = QStringLiteral("xkb:us::eng");
    if (followSystem)
        content.followSystem = FollowSystemChoice{false, {}};
    content.sourceIcon = [](const QString &id) -> std::optional<QImage> {
        for (const auto &[choice, icon] : catalog()) {
            if (id.startsWith(choice.id))
                return textIcon(icon);
        }
        return std::nullopt;
    };
    return content;
}

SourceList *sourceList(SourceListContent content)
{
    auto *list = new SourceList;
    list->setContent(std::move(content));
    return list;
}

template <typename Button> Button *hovered(Button *button)
{
    QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QApplication::sendEvent(button, &enter);
    return button;
}

QWidget *row(std::initializer_list<QWidget *> parts)
{
    auto *holder = new QWidget;
    auto *layout = new QHBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (QWidget *part : parts)
        layout->addWidget(part);
    layout->addStretch();
    return holder;
}

QWidget *disabled(QWidget *widget)
{
    widget->setEnabled(false);
    return widget;
}

QWidget *pressed(QAbstractButton *button)
{
    button->setDown(true);
    return button;
}

QWidget *headersAndButtons(const Scene::Context &)
{
    SceneSheet sheet;
    sheet.caption(QStringLiteral("Header, drop-down"));
    auto *gear = new IconButton(QStringLiteral("gearshape"));
    sheet.add(new PanelHeader(false, t("app.name"), nullptr, gear));
    sheet.caption(QStringLiteral("Header, window, back"));
    sheet.add(new PanelHeader(true, t("ui.preferences"), new IconButton(QStringLiteral("chevron.left"))));
    sheet.caption(QStringLiteral("Icon buttons: normal, hovered, pressed, disabled"));
    sheet.add(row({new IconButton(QStringLiteral("gearshape")), hovered(new IconButton(QStringLiteral("gearshape"))),
                   pressed(new IconButton(QStringLiteral("chevron.left"))),
                   disabled(new IconButton(QStringLiteral("gearshape")))}));
    sheet.caption(QStringLiteral("Quiet buttons: normal, hovered, pressed, disabled"));
    sheet.add(row({new QuietButton(t("ui.keyboard-settings"), QStringLiteral("keyboard")),
                   hovered(new QuietButton(t("panel.quit"), QStringLiteral("power")))}));
    sheet.add(row({pressed(new QuietButton(t("setup.refresh"), QStringLiteral("arrow.clockwise"))),
                   disabled(new QuietButton(t("setup.skip")))}));
    sheet.caption(QStringLiteral("Row buttons: normal, hovered, pressed, disabled"));
    sheet.add(new NavigationRow(t("setup.reopen"), QStringLiteral("chevron.right")));
    sheet.add(hovered(new NavigationRow(t("ui.keyboard-settings"), QStringLiteral("arrow.up.forward"))));
    auto *about = new NavigationRow(t("about.title"), QStringLiteral("chevron.right"));
    sheet.add(pressed(about));
    sheet.add(disabled(new NavigationRow(t("setup.reopen"), QStringLiteral("chevron.right"))));
    sheet.caption(QStringLiteral("Search field: empty, with text"));
    sheet.add(new SearchField(QStringLiteral("source-search")));
    auto *search = new SearchField(QStringLiteral("setup-search"));
    search->setText(QStringLiteral("Deu"));
    sheet.add(search);
    return sheet.widget();
}

QWidget *bannersAndSettings(const Scene::Context &)
{
    const Theme look = theme();
    SceneSheet sheet;
    sheet.caption(QStringLiteral("Banners: with retry, secure input, no button"));
    sheet.add(new Banner(t("state.missing"), QStringLiteral("exclamationmark.triangle.fill"), look.orange,
                         {t("ui.retry"), [] {}}));
    sheet.add(new Banner(t("ui.how-body"), QStringLiteral("lock.shield.fill"), look.indigo));
    sheet.add(new Banner(t("setup.draft-hint"), QStringLiteral("exclamationmark.triangle.fill"), look.orange,
                         {std::nullopt, [] {}}));
    sheet.caption(QStringLiteral("Setting rows on a surface"));
    auto *card = new Surface(13);
    auto *column = new QVBoxLayout(card);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *keep = new QCheckBox;
    keep->setChecked(true);
    column->addWidget(
        new SettingRow(QStringLiteral("pin.fill"), look.accent, t("setup.keep"), t("setup.keep-caption"), keep));
    column->addWidget(new InsetDivider(42));
    column->addWidget(
        new SettingRow(QStringLiteral("power"), look.green, t("panel.login"), t("setup.login-caption"), new QCheckBox));
    sheet.add(card);
    sheet.caption(QStringLiteral("Tinted surface with artwork"));
    auto *target = new Surface(16, look.accent);
    auto *line = new QHBoxLayout(target);
    line->setContentsMargins(12, 12, 12, 12);
    line->setSpacing(12);
    line->addWidget(new SourceArtwork(textIcon(QStringLiteral("あ")), 40));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new ThemedLabel(t("ui.target"), 10.5, QFont::Medium, ThemedLabel::secondary));
    texts->addWidget(new ThemedLabel(QStringLiteral("日本語 - Anthy"), 14, QFont::DemiBold, ThemedLabel::primary));
    line->addLayout(texts, 1);
    sheet.add(target);
    sheet.caption(QStringLiteral("Setting icons, every symbol"));
    auto *icons = new QWidget;
    auto *grid = new QHBoxLayout(icons);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(3);
    const QList<QColor> tints{look.accent, look.green, look.blue, look.indigo, look.orange};
    const QStringList names = Symbols::names();
    auto *wrap = new QVBoxLayout;
    for (int i = 0; i < names.size(); ++i) {
        if (i % 13 == 0) {
            grid = new QHBoxLayout;
            grid->setSpacing(0);
            wrap->addLayout(grid);
        }
        grid->addWidget(new SettingIcon(names.at(i), tints.at(i % tints.size())));
    }
    delete icons->layout();
    wrap->setContentsMargins(0, 0, 0, 0);
    icons->setLayout(wrap);
    sheet.add(icons);
    return sheet.widget();
}

QWidget *sourceLists(const Scene::Context &)
{
    SceneSheet sheet;
    sheet.caption(QStringLiteral("Follow system and five sources; pinned and current"));
    sheet.add(sourceList(listContent(5, true)));
    sheet.caption(QStringLiteral("Follow system selected"));
    SourceListContent following = listContent(2, true);
    following.followSystem->selected = true;
    following.selectedID.reset();
    sheet.add(sourceList(following));
    sheet.caption(QStringLiteral("Thirty sources scroll"));
    sheet.add(sourceList(listContent(30, false)));
    return sheet.widget();
}

QWidget *sourceListStates(const Scene::Context &)
{
    SceneSheet sheet;
    sheet.caption(QStringLiteral("Empty catalog"));
    sheet.add(sourceList(listContent(0, false)));
    sheet.caption(QStringLiteral("No search results, thirty sources"));
    SourceListContent none = listContent(30, false);
    none.sources.clear();
    sheet.add(sourceList(none));
    sheet.caption(QStringLiteral("Increased contrast"));
    auto *strong = new QWidget;
    Theme::setPreferences(strong, DisplayPreferences{true, false, false});
    auto *column = new QVBoxLayout(strong);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(sourceList(listContent(3, true)));
    sheet.add(strong);
    sheet.caption(QStringLiteral("Disabled"));
    sheet.add(disabled(sourceList(listContent(2, false))));
    return sheet.widget();
}

const Scene::Registration headers("components-buttons", headersAndButtons);
const Scene::Registration banners("components-banners", bannersAndSettings);
const Scene::Registration lists("components-sources", sourceLists);
const Scene::Registration states("components-source-states", sourceListStates);

} // namespace
