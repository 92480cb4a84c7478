#pragma once

#include "app/panel/PanelPage.h"

#include <QWidget>

#include <optional>

class AppModel;
class MainPage;
class OnboardingHeader;
class OnboardingView;
class QScrollArea;
class QVBoxLayout;
class SettingsPage;
class WindowMaterial;

// Everything Tolvar offers by pointer and keyboard, in the drop-down under the
// tray icon or in a window: the main page, the settings, About, and the setup
// flow in their place while it runs. It reads the model and calls its
// operations; its own state is only the page, the searches and the layout.
// The panel fixes its own size; a host sizes itself after it.
class Panel : public QWidget
{
public:
    Panel(AppModel &model, bool inWindow, int maximumHeight, QWidget *parent = nullptr);

    PanelPage page() const { return m_page; }
    void setPage(PanelPage page);
    // As the gear and Ctrl+comma do: the login state afresh, then the settings.
    void openSettings();

    // The usable height of the panel's screen, as the screen probe reports it.
    void setScreenHeight(int height);
    std::optional<int> screenHeight() const { return m_screenHeight; }
    // The most the page area may take before it scrolls.
    int scrollHeight() const;

    static constexpr int panelWidth = 320;
    static constexpr int sidePadding = 14;
    static constexpr int headerTopDropDown = 10;
    static constexpr int reservedHeaderDropDown = 48;
    static constexpr int reservedHeaderWindow = 40;
    static constexpr int backOffset = 4;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildPages();
    void render();
    void rebuildHeader();
    void showContent();
    void scheduleFit();
    void fit();
    QWidget *padded(QWidget *content);
    QString identity() const;

    AppModel &m_model;
    bool m_inWindow;
    int m_maximumHeight;
    PanelPage m_page = PanelPage::main;
    std::optional<int> m_screenHeight;

    WindowMaterial *m_material = nullptr;
    QVBoxLayout *m_headerBox;
    QWidget *m_header = nullptr;
    QScrollArea *m_body;
    QString m_language;
    MainPage *m_main = nullptr;
    QWidget *m_mainFrame = nullptr;
    SettingsPage *m_settings = nullptr;
    QWidget *m_settingsFrame = nullptr;
    QWidget *m_aboutFrame = nullptr;
    QWidget *m_setupFrame = nullptr;
    OnboardingView *m_setupView = nullptr;
    OnboardingHeader *m_setupHeader = nullptr;
    bool m_showingSetup = false;
    QString m_identity;
    bool m_fitPending = false;
};
