#include "app/setup/OnboardingView.h"

#include "app/model/AppModel.h"
#include "app/panel/SourceFilter.h"
#include "app/setup/StepDots.h"
#include "app/tray/TrayImage.h"
#include "app/ui/controls/Banner.h"
#include "app/ui/controls/HiddenShortcut.h"
#include "app/ui/controls/IconButton.h"
#include "app/ui/controls/PrimaryButton.h"
#include "app/ui/controls/QuietButton.h"
#include "app/ui/controls/SearchField.h"
#include "app/ui/controls/Switch.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/InsetDivider.h"
#include "app/ui/look/SourceArtwork.h"
#include "app/ui/look/Surface.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "app/ui/rows/SettingRow.h"
#include "app/ui/rows/SourceList.h"
#include "core/l10n/L10n.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

OnboardingView::OnboardingView(AppModel &model, std::function<void()> openKeyboardSettings, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);

    auto *titles = new QVBoxLayout;
    titles->setContentsMargins(2, 0, 2, 0);
    titles->setSpacing(5);
    m_title = new ThemedLabel(QString(), 20, QFont::Bold, ThemedLabel::primary, this);
    m_body = new ThemedLabel(QString(), 12, QFont::Normal, ThemedLabel::secondary, this);
    titles->addWidget(m_title);
    titles->addWidget(m_body);
    column->addLayout(titles);

    m_selection = selectionPage(std::move(openKeyboardSettings));
    column->addWidget(m_selection);
    m_confirmation = confirmationPage();
    column->addWidget(m_confirmation);

    m_bannerBox = new QWidget(this);
    auto *bannerColumn = new QVBoxLayout(m_bannerBox);
    bannerColumn->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_bannerBox);

    column->addWidget(navigationRow());

    // Return moves on, as a dialog's default button does.
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        new HiddenShortcut(QKeySequence(key), this, [this] {
            if (m_next->isEnabled() && m_next->isVisible())
                m_next->click();
        });
    }
    render();
}

QWidget *OnboardingView::selectionPage(std::function<void()> openKeyboardSettings)
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);

    m_search = new SearchField(QLatin1String(Identifier::setupSearch), page);
    m_search->onTextChanged([this](const QString &text) {
        m_query = text;
        renderSources();
    });
    column->addWidget(m_search);
    m_list = new SourceList(page);
    column->addWidget(m_list);

    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(-4, 0, -4, 0);
    auto *keyboard = new QuietButton(L10n::text("ui.keyboard-settings"), QStringLiteral("keyboard"), page);
    keyboard->setObjectName(QLatin1String(Identifier::setupKeyboardSettings));
    connect(keyboard, &QAbstractButton::clicked, this, [open = std::move(openKeyboardSettings)] { open(); });
    buttons->addWidget(keyboard);
    buttons->addStretch();
    auto *refresh = new QuietButton(L10n::text("setup.refresh"), QStringLiteral("arrow.clockwise"), page);
    refresh->setObjectName(QLatin1String(Identifier::setupRefresh));
    connect(refresh, &QAbstractButton::clicked, this, [this] { m_model.refresh(); });
    buttons->addWidget(refresh);
    column->addLayout(buttons);

    auto *hint = new ThemedLabel(L10n::text("setup.draft-hint"), 10.5, QFont::Normal, ThemedLabel::tertiary, page);
    hint->setContentsMargins(4, 0, 4, 0);
    column->addWidget(hint);
    return page;
}

QWidget *OnboardingView::confirmationPage()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);
    const Theme theme = Theme::of(this);

    auto *card = new Surface(16, theme.accent, page);
    auto *cardRow = new QHBoxLayout(card);
    cardRow->setContentsMargins(12, 12, 12, 12);
    cardRow->setSpacing(12);
    m_artworkBox = new QVBoxLayout;
    m_artworkBox->setContentsMargins(0, 0, 0, 0);
    cardRow->addLayout(m_artworkBox);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(new ThemedLabel(L10n::text("ui.target"), 10.5, QFont::Medium, ThemedLabel::secondary, card));
    m_target = new ThemedLabel(QString(), 14, QFont::DemiBold, ThemedLabel::primary, card);
    m_target->setObjectName(QLatin1String(Identifier::setupTarget));
    names->addWidget(m_target);
    cardRow->addLayout(names, 1);
    column->addWidget(card);

    auto *options = new Surface(13, std::nullopt, page);
    auto *optionColumn = new QVBoxLayout(options);
    optionColumn->setContentsMargins(0, 0, 0, 0);
    optionColumn->setSpacing(0);
    m_keep = new Switch(L10n::text("setup.keep"));
    m_keep->setObjectName(QLatin1String(Identifier::setupKeep));
    connect(m_keep, &QAbstractButton::clicked, this, [this](bool on) { m_model.setSetupKeepEnabled(on); });
    optionColumn->addWidget(new SettingRow(QStringLiteral("pin.fill"), theme.accent, L10n::text("setup.keep"),
                                           L10n::text("setup.keep-caption"), m_keep, options));
    optionColumn->addWidget(new InsetDivider(42, options));
    m_login = new Switch(L10n::text("panel.login"));
    m_login->setObjectName(QLatin1String(Identifier::setupLogin));
    connect(m_login, &QAbstractButton::clicked, this, [this](bool on) { m_model.setSetupLoginRequested(on); });
    optionColumn->addWidget(new SettingRow(QStringLiteral("power"), theme.green, L10n::text("panel.login"),
                                           L10n::text("setup.login-caption"), m_login, options));
    column->addWidget(options);

    auto *menu = new QHBoxLayout;
    menu->setContentsMargins(4, 0, 4, 0);
    menu->setSpacing(10);
    auto *symbol =
        new SymbolView(QStringLiteral("menubar.rectangle"), 14, ThemedLabel::secondary, Symbols::Weight::regular, page);
    symbol->setBox(QSize(22, 16));
    menu->addWidget(symbol, 0, Qt::AlignTop);
    auto *menuTexts = new QVBoxLayout;
    menuTexts->setSpacing(2);
    menuTexts->addWidget(
        new ThemedLabel(L10n::text("setup.menu-title"), 11.5, QFont::DemiBold, ThemedLabel::primary, page));
    menuTexts->addWidget(
        new ThemedLabel(L10n::text("setup.menu-body"), 10.5, QFont::Normal, ThemedLabel::secondary, page));
    menu->addLayout(menuTexts, 1);
    column->addLayout(menu);
    return page;
}

QWidget *OnboardingView::navigationRow()
{
    auto *row = new QWidget(this);
    auto *box = new QHBoxLayout(row);
    box->setContentsMargins(0, 2, 0, 0);
    box->setSpacing(10);
    m_back = new IconButton(QStringLiteral("chevron.left"), row);
    m_back->setObjectName(QLatin1String(Identifier::setupBack));
    m_back->setToolTip(L10n::text("ui.back"));
    m_back->setAccessibleName(L10n::text("ui.back"));
    connect(m_back, &QAbstractButton::clicked, this, [this] { m_model.setSetupStep(0); });
    box->addWidget(m_back);
    m_dots = new StepDots(m_model.setupStep() == 0 ? 0 : 1, pageCount, row);
    box->addWidget(m_dots);
    box->addStretch();
    m_next = new PrimaryButton(L10n::text("setup.next"), row);
    m_next->setObjectName(QLatin1String(Identifier::setupNext));
    connect(m_next, &QAbstractButton::clicked, this, [this] {
        if (m_model.setupStep() == 0)
            m_model.setSetupStep(1);
        else
            m_model.finishSetup();
    });
    box->addWidget(m_next);
    return row;
}

void OnboardingView::render()
{
    const bool choosing = m_model.setupStep() == 0;
    m_title->setText(L10n::text(choosing ? "setup.choose-title" : "setup.confirm-title"));
    m_body->setText(L10n::text(choosing ? "setup.choose-body" : "setup.confirm-body"));
    m_selection->setVisible(choosing);
    m_confirmation->setVisible(!choosing);
    if (choosing)
        renderSources();
    else
        renderConfirmation();

    const std::optional<QString> warning = m_model.warning();
    if (!warning) {
        delete m_banner;
        m_banner = nullptr;
    } else if (!m_banner) {
        m_banner = new Banner(*warning, QStringLiteral("exclamationmark.triangle.fill"), Theme::of(this).orange, {},
                              m_bannerBox);
        m_banner->setObjectName(QLatin1String(Identifier::setupWarning));
        m_bannerBox->layout()->addWidget(m_banner);
    } else {
        m_banner->setText(*warning);
    }
    m_bannerBox->setVisible(warning.has_value());

    m_back->setVisible(!choosing);
    m_dots->setStep(choosing ? 0 : 1);
    m_next->setText(L10n::text(choosing ? "setup.next" : "setup.finish"));
    m_next->setAccessibleName(m_next->text());
    m_next->setEnabled(m_model.canFinishSetup());
    m_next->updateGeometry();
}

void OnboardingView::renderSources()
{
    const QList<InputChoice> &sources = m_model.sources();
    m_search->setVisible(SourceFilter::showsSearch(sources.size(), m_query));
    SourceListContent content;
    content.sources = SourceFilter::filtered(sources, m_query);
    content.totalCount = static_cast<int>(sources.size());
    content.unreachable = m_model.sourcesUnreachable().has_value();
    content.selectedID = m_model.setupSourceID();
    content.currentID = m_model.currentID();
    content.sourceIcon = [&model = m_model](const QString &id) -> std::optional<QImage> {
        return model.sourceIcon(id);
    };
    content.onSelect = [&model = m_model](const QString &id) { model.setSetupSourceID(id); };
    m_list->setContent(std::move(content));
}

void OnboardingView::renderConfirmation()
{
    const std::optional<QString> id = m_model.setupSourceID();
    const QString artworkFor = id.value_or(QString());
    if (artworkFor != m_artworkFor || m_artworkBox->count() == 0) {
        m_artworkFor = artworkFor;
        while (QLayoutItem *item = m_artworkBox->takeAt(0)) {
            delete item->widget();
            delete item;
        }
        const QImage image = id ? m_model.sourceIcon(*id) : TrayImage::image();
        m_artworkBox->addWidget(new SourceArtwork(image, 40, m_confirmation));
    }
    m_target->setText(m_model.setupSourceName().value_or(L10n::text("setup.source-gone")));
    m_keep->setChecked(m_model.setupKeepEnabled());
    m_login->setChecked(m_model.setupLoginRequested().value_or(m_model.loginEnabled()));
}
