#include "app/panel/Panel.h"

#include "app/about/AboutPage.h"
#include "app/about/UpdateViewModel.h"
#include "app/model/AppModel.h"
#include "app/panel/MainPage.h"
#include "app/panel/PanelScreenHeight.h"
#include "app/panel/SettingsPage.h"
#include "app/setup/OnboardingHeader.h"
#include "app/setup/OnboardingView.h"
#include "app/tray/TrayImage.h"
#include "app/ui/controls/HiddenShortcut.h"
#include "app/ui/controls/IconButton.h"
#include "app/ui/controls/PanelHeader.h"
#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/WindowMaterial.h"
#include "core/l10n/L10n.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// The tray's keyboard, quiet, before the title of the drop-down.
class TrayGlyph : public QWidget
{
public:
    explicit TrayGlyph(QWidget *parent)
        : QWidget(parent)
    {
        setFixedSize(20, 16);
        AccessibleComponent::hide(this);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(rect()), TrayImage::drawn(TrayImage::image(), Theme::of(this).secondary));
    }
};

IconButton *iconButton(const QString &symbol, const QString &label, const char *identifier)
{
    auto *button = new IconButton(symbol);
    button->setToolTip(label);
    button->setAccessibleName(label);
    button->setObjectName(QLatin1String(identifier));
    return button;
}

} // namespace

Panel::Panel(AppModel &model, bool inWindow, int maximumHeight, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_inWindow(inWindow)
    , m_maximumHeight(maximumHeight)
{
    if (inWindow)
        m_material = new WindowMaterial(this);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    m_headerBox = new QVBoxLayout;
    m_headerBox->setContentsMargins(sidePadding, inWindow ? 0 : headerTopDropDown, sidePadding, 0);
    column->addLayout(m_headerBox);

    m_body = new QScrollArea(this);
    m_body->setFrameShape(QFrame::NoFrame);
    m_body->setWidgetResizable(true);
    m_body->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_body->setFixedWidth(panelWidth);
    m_body->viewport()->setAutoFillBackground(false);
    column->addWidget(m_body);

    buildPages();

    new PanelScreenHeight(this, [this](int height) { setScreenHeight(height); });
    new HiddenShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this, [] { QCoreApplication::quit(); });
    new HiddenShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma), this, [this] {
        if (!m_model.showsOnboarding())
            openSettings();
    });
    if (inWindow)
        new HiddenShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this, [this] { window()->close(); });

    connect(&model, &AppModel::changed, this, [this] { render(); });
    render();
}

void Panel::setPage(PanelPage page)
{
    if (page == m_page)
        return;
    m_page = page;
    render();
}

void Panel::openSettings()
{
    m_model.refreshLogin();
    setPage(PanelPage::settings);
}

void Panel::setScreenHeight(int height)
{
    if (m_screenHeight == height)
        return;
    m_screenHeight = height;
    scheduleFit();
}

int Panel::scrollHeight() const
{
    const int available = qMin(m_screenHeight.value_or(m_maximumHeight), m_maximumHeight);
    return qMax(available - (m_inWindow ? reservedHeaderWindow : reservedHeaderDropDown), 1);
}

QWidget *Panel::padded(QWidget *content)
{
    auto *frame = new QWidget(this);
    frame->hide();
    auto *box = new QVBoxLayout(frame);
    box->setContentsMargins(sidePadding, 0, sidePadding, sidePadding);
    box->setSpacing(0);
    content->setParent(frame);
    box->addWidget(content);
    box->addStretch();
    frame->installEventFilter(this);
    return frame;
}

QString Panel::identity() const
{
    static const char *const names[] = {"main", "settings", "about"};
    return QStringLiteral("%1-%2-%3")
        .arg(QLatin1String(names[static_cast<int>(m_page)]),
             m_model.showsOnboarding() ? QStringLiteral("true") : QStringLiteral("false"),
             QString::number(m_model.setupStep()));
}

// Gone once the event in hand is over: it may be the sender of what is being handled.
static void discard(QWidget *widget)
{
    if (widget) {
        widget->hide();
        widget->deleteLater();
    }
}

void Panel::buildPages()
{
    // Texts are read when a page is built, so a new language builds them anew.
    m_language = L10n::activeLanguage();
    const QString query = m_main ? m_main->query() : QString();
    if (m_body->widget())
        m_body->takeWidget()->setParent(this);
    for (QWidget *frame : {m_mainFrame, m_settingsFrame, m_aboutFrame, m_setupFrame, m_header})
        discard(frame);
    m_aboutFrame = m_setupFrame = m_header = nullptr;
    m_setupView = nullptr;
    m_setupHeader = nullptr;
    m_main = new MainPage(m_model, [this] { m_model.openKeyboardSettings(); });
    m_main->setQuery(query);
    m_mainFrame = padded(m_main);
    m_settings =
        new SettingsPage(m_model, {[this] { m_model.openKeyboardSettings(); }, [this] { setPage(PanelPage::about); }});
    m_settingsFrame = padded(m_settings);
}

void Panel::render()
{
    if (L10n::activeLanguage() != m_language)
        buildPages();
    const QString identity = this->identity();
    if (identity != m_identity || m_showingSetup != m_model.showsOnboarding() || !m_header) {
        m_showingSetup = m_model.showsOnboarding();
        rebuildHeader();
        showContent();
    }
    if (m_showingSetup) {
        m_setupView->render();
        m_setupHeader->render();
    } else if (m_page == PanelPage::main) {
        m_main->render();
    } else if (m_page == PanelPage::settings) {
        m_settings->render();
    }
    if (identity != m_identity) {
        // A new page starts at its top.
        m_identity = identity;
        m_body->verticalScrollBar()->setValue(0);
    }
    scheduleFit();
}

void Panel::rebuildHeader()
{
    if (m_header) {
        m_headerBox->removeWidget(m_header);
        discard(m_header);
    }
    m_setupHeader = nullptr;
    int leftPadding = sidePadding;
    int rightPadding = sidePadding;
    if (m_showingSetup) {
        m_setupHeader = new OnboardingHeader(m_model, m_inWindow, this);
        m_header = m_setupHeader;
        rightPadding -= OnboardingHeader::trailingOffset;
    } else if (m_page == PanelPage::main) {
        QWidget *glyph = m_inWindow ? nullptr : new TrayGlyph(nullptr);
        IconButton *gear = iconButton(QStringLiteral("gearshape"), L10n::text("ui.preferences"), Identifier::settings);
        connect(gear, &QAbstractButton::clicked, this, [this] { openSettings(); });
        m_header = new PanelHeader(m_inWindow, L10n::text("app.name"), glyph, gear, this);
    } else {
        const bool about = m_page == PanelPage::about;
        IconButton *back = iconButton(QStringLiteral("chevron.left"), L10n::text("ui.back"), Identifier::back);
        back->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Left));
        connect(back, &QAbstractButton::clicked, this,
                [this, about] { setPage(about ? PanelPage::settings : PanelPage::main); });
        m_header =
            new PanelHeader(m_inWindow, L10n::text(about ? "about.title" : "ui.preferences"), back, nullptr, this);
        // The back arrow's own padding makes it look further in than the title would be.
        leftPadding -= backOffset;
    }
    m_headerBox->setContentsMargins(leftPadding, m_inWindow ? 0 : headerTopDropDown, rightPadding, 0);
    m_headerBox->addWidget(m_header);
}

void Panel::showContent()
{
    QWidget *frame = nullptr;
    if (m_showingSetup) {
        if (!m_setupFrame) {
            m_setupView = new OnboardingView(m_model, [this] { m_model.openKeyboardSettings(); });
            m_setupFrame = padded(m_setupView);
        }
        frame = m_setupFrame;
    } else if (m_page == PanelPage::main) {
        frame = m_mainFrame;
    } else if (m_page == PanelPage::settings) {
        frame = m_settingsFrame;
    } else {
        if (!m_aboutFrame) {
            // Made once, when first shown.
            m_aboutFrame = padded(new AboutPage(new UpdateViewModel(UpdateChecker::make(AppBuildInfo::current())),
                                                [this](const QUrl &address) { m_model.openAddress(address); }));
        }
        frame = m_aboutFrame;
    }
    if (m_body->widget() != frame) {
        if (QWidget *old = m_body->takeWidget()) {
            old->hide();
            old->setParent(this);
            old->hide();
        }
        m_body->setWidget(frame);
        frame->show();
    }
    if (!m_showingSetup && m_setupFrame) {
        // The flow's search starts empty each time it opens.
        discard(m_setupFrame);
        m_setupFrame = nullptr;
        m_setupView = nullptr;
    }
}

bool Panel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && watched == m_body->widget())
        scheduleFit();
    return QWidget::eventFilter(watched, event);
}

void Panel::resizeEvent(QResizeEvent *event)
{
    if (m_material) {
        m_material->setGeometry(rect());
        m_material->lower();
    }
    QWidget::resizeEvent(event);
}

void Panel::scheduleFit()
{
    if (m_fitPending)
        return;
    m_fitPending = true;
    QTimer::singleShot(0, this, [this] {
        m_fitPending = false;
        fit();
    });
    // The first layout should already have the right size.
    if (!isVisible()) {
        m_fitPending = false;
        fit();
    }
}

void Panel::fit()
{
    QWidget *content = m_body->widget();
    if (!content)
        return;
    const int natural =
        content->hasHeightForWidth() ? content->heightForWidth(panelWidth) : content->sizeHint().height();
    const int limit = scrollHeight();
    const bool overflows = natural > limit;
    m_body->setObjectName(overflows ? QLatin1String(Identifier::panelOverflow) : QString());
    m_body->setVerticalScrollBarPolicy(overflows ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_body->setFixedHeight(overflows ? limit : natural);
}
