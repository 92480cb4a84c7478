#include "app/panel/SettingsPage.h"

#include "app/model/AppModel.h"
#include "app/panel/LanguageMenu.h"
#include "app/panel/WarningBanner.h"
#include "app/ui/controls/BusyIndicator.h"
#include "app/ui/controls/RowButton.h"
#include "app/ui/controls/Switch.h"
#include "app/ui/look/Hairline.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace {

// A setting's title on the left and its control on the right.
QWidget *settingLine(const QString &title, QWidget *control, QWidget *parent)
{
    auto *row = new QWidget(parent);
    auto *box = new QHBoxLayout(row);
    box->setContentsMargins(SettingsPage::rowPadding, 6, SettingsPage::rowPadding, 6);
    box->setSpacing(10);
    box->addWidget(new ThemedLabel(title, 12.5, QFont::Normal, ThemedLabel::primary, row), 1);
    control->setParent(row);
    box->addWidget(control, 0, Qt::AlignVCenter);
    return row;
}

// A row whose chevron turns, and the text under it, asked for at each opening.
class Disclosure : public QWidget
{
public:
    Disclosure(const char *identifier, const QString &title, std::function<QString()> body, QWidget *parent)
        : QWidget(parent)
    {
        auto *column = new QVBoxLayout(this);
        column->setContentsMargins(0, 4, 0, 4);
        column->setSpacing(2);
        auto *toggle = new RowButton(8, this);
        toggle->setObjectName(QLatin1String(identifier));
        toggle->setCheckable(true);
        toggle->setText(title);
        toggle->setAccessibleName(title);
        auto *row = new QHBoxLayout(toggle);
        row->setContentsMargins(SettingsPage::rowPadding, 6, SettingsPage::rowPadding, 6);
        row->setSpacing(6);
        auto *chevron = new SymbolView(
            QStringLiteral("chevron.right"), Symbols::boxFor(11), [](const Theme &theme) { return theme.secondary; },
            Symbols::Weight::semibold, toggle);
        row->addWidget(chevron);
        auto *label = new ThemedLabel(title, 12.5, QFont::Normal, ThemedLabel::primary, toggle);
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        row->addWidget(label, 1);
        column->addWidget(toggle);
        auto *text = new ThemedLabel(QString(), 11.5, QFont::Normal, ThemedLabel::secondary, this);
        text->setContentsMargins(SettingsPage::rowPadding, 0, SettingsPage::rowPadding, 4);
        text->setVisible(false);
        column->addWidget(text);
        connect(toggle, &QAbstractButton::toggled, this, [text, chevron, body = std::move(body)](bool open) {
            if (open)
                text->setText(body());
            text->setVisible(open);
            chevron->setSymbol(open ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"));
        });
    }
};

// The findings of `tolvar doctor`, each with what to do about it.
QString findings(const QList<DoctorCheck> &checks)
{
    QStringList paragraphs;
    for (const DoctorCheck &check : checks) {
        QString paragraph = check.heading();
        if (!check.advice.key().isEmpty())
            paragraph += QLatin1Char('\n') + check.advice.text();
        paragraphs << paragraph;
    }
    return paragraphs.join(QStringLiteral("\n\n"));
}

} // namespace

SettingsPage::SettingsPage(AppModel &model, Actions actions, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_actions(std::move(actions))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    m_bannerBox = new QWidget(this);
    auto *bannerColumn = new QVBoxLayout(m_bannerBox);
    bannerColumn->setContentsMargins(0, 6, 0, 4);
    m_banner = new WarningBanner(model, m_bannerBox);
    bannerColumn->addWidget(m_banner);
    column->addWidget(m_bannerBox);

    column->addWidget(loginRow());
    column->addWidget(languageRow());
    column->addWidget(Hairline::create(this, QMargins(8, 6, 8, 6)));

    m_reopen = new NavigationRow(L10n::text("setup.reopen"), QStringLiteral("chevron.right"), this);
    m_reopen->setObjectName(QLatin1String(Identifier::setupReopen));
    connect(m_reopen, &QAbstractButton::clicked, this, [this] { m_model.beginSetup(); });
    column->addWidget(m_reopen);
    auto *keyboard = new NavigationRow(L10n::text("ui.keyboard-settings"), QStringLiteral("arrow.up.forward"), this);
    keyboard->setObjectName(QLatin1String(Identifier::settingsKeyboard));
    connect(keyboard, &QAbstractButton::clicked, this, [this] { m_actions.openKeyboardSettings(); });
    column->addWidget(keyboard);
    auto *about = new NavigationRow(L10n::text("about.title"), QStringLiteral("chevron.right"), this);
    about->setObjectName(QLatin1String(Identifier::about));
    connect(about, &QAbstractButton::clicked, this, [this] { m_actions.showAbout(); });
    column->addWidget(about);
    column->addWidget(Hairline::create(this, QMargins(8, 6, 8, 6)));
    column->addWidget(new Disclosure(
        Identifier::keepingHelp, L10n::text("ui.how-title"), [] { return L10n::text("ui.how-body"); }, this));
    column->addWidget(new Disclosure(
        Identifier::checkComputer, L10n::text("panel.doctor"), [this] { return findings(m_model.checkComputer()); },
        this));
    render();
}

QWidget *SettingsPage::loginRow()
{
    // The switch and the progress share one box, so the row does not move.
    auto *box = new QWidget(this);
    box->setFixedSize(controlWidth, 22);
    m_login = new Switch(L10n::text("panel.login"), box);
    m_login->setObjectName(QLatin1String(Identifier::loginEnabled));
    m_login->setAccessibleDescription(L10n::text("panel.login.caption"));
    m_login->setGeometry(controlWidth - Switch::trackWidth, 1, Switch::trackWidth, Switch::trackHeight);
    connect(m_login, &QAbstractButton::clicked, this, [this](bool on) { m_model.setLogin(on); });
    m_loginProgress = new BusyIndicator(L10n::text("state.updating"), box);
    m_loginProgress->setObjectName(QLatin1String(Identifier::loginProgress));
    m_loginProgress->move(controlWidth - Switch::trackWidth / 2 - BusyIndicator::side / 2,
                          (22 - BusyIndicator::side) / 2);
    QWidget *row = settingLine(L10n::text("panel.login"), box, this);
    row->setToolTip(L10n::text("panel.login.caption"));
    return row;
}

QWidget *SettingsPage::languageRow()
{
    m_language = new LanguageMenu(m_model, this);
    return settingLine(L10n::text("panel.language"), m_language, this);
}

void SettingsPage::render()
{
    m_banner->render();
    m_bannerBox->setVisible(m_model.warning().has_value());
    const bool busy = m_model.loginBusy();
    m_login->setChecked(m_model.loginEnabled());
    m_login->setEnabled(!busy);
    m_login->setVisible(!busy);
    m_loginProgress->setVisible(busy);
    m_language->render();
    m_reopen->setEnabled(!m_model.configError() && !busy);
}
