#include "app/panel/MainPage.h"

#include "app/model/AppModel.h"
#include "app/panel/SourceFilter.h"
#include "app/panel/StatusLine.h"
#include "app/panel/WarningBanner.h"
#include "app/ui/controls/QuietButton.h"
#include "app/ui/controls/SearchField.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/rows/SourceList.h"
#include "core/l10n/L10n.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

MainPage::MainPage(AppModel &model, std::function<void()> openKeyboardSettings, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);

    m_banner = new WarningBanner(model, this);
    column->addWidget(m_banner);

    m_statusRow = new QWidget(this);
    auto *statusBox = new QHBoxLayout(m_statusRow);
    statusBox->setContentsMargins(4, 0, 4, 0);
    m_status = new StatusLine(m_statusRow);
    statusBox->addWidget(m_status);
    column->addWidget(m_statusRow);

    m_search = new SearchField(QLatin1String(Identifier::sourceSearch), this);
    m_search->onTextChanged([this](const QString &text) {
        m_query = text;
        renderSources();
    });
    column->addWidget(m_search);
    m_list = new SourceList(this);
    column->addWidget(m_list);

    auto *footer = new QHBoxLayout;
    footer->setSpacing(footerSpacing);
    auto *keyboard = new QuietButton(L10n::text("ui.keyboard-settings"), QStringLiteral("keyboard"), this);
    keyboard->setObjectName(QLatin1String(Identifier::keyboardSettings));
    connect(keyboard, &QAbstractButton::clicked, this, [open = std::move(openKeyboardSettings)] { open(); });
    footer->addWidget(keyboard);
    footer->addStretch();
    auto *quit = new QuietButton(L10n::text("panel.quit"), QStringLiteral("power"), this);
    quit->setObjectName(QLatin1String(Identifier::quit));
    connect(quit, &QAbstractButton::clicked, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    footer->addWidget(quit);
    column->addLayout(footer);
    render();
}

void MainPage::setQuery(const QString &query)
{
    m_search->setText(query);
    m_query = query;
    renderSources();
}

void MainPage::render()
{
    m_banner->render();
    const RuntimeState state = m_model.runtimeState();
    m_statusRow->setVisible(StatusLine::shows(state));
    m_status->setState(state);
    renderSources();
}

void MainPage::renderSources()
{
    const QList<InputChoice> &sources = m_model.sources();
    m_search->setVisible(SourceFilter::showsSearch(sources.size(), m_query));

    SourceListContent content;
    content.sources = SourceFilter::filtered(sources, m_query);
    content.totalCount = static_cast<int>(sources.size());
    content.unreachable = m_model.sourcesUnreachable().has_value();
    if (m_model.enabled())
        content.selectedID = m_model.pinnedID();
    content.currentID = m_model.currentID();
    content.followSystem = FollowSystemChoice{!m_model.enabled(), [&model = m_model] { model.setEnabled(false); }};
    content.sourceIcon = [&model = m_model](const QString &id) -> std::optional<QImage> {
        return model.sourceIcon(id);
    };
    content.onSelect = [&model = m_model](const QString &id) { model.choose(id); };
    m_list->setContent(std::move(content));
    m_list->setEnabled(!m_model.configError());
}
