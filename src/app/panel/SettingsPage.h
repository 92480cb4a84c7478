#pragma once

#include <QWidget>

#include <functional>

class AppModel;
class BusyIndicator;
class LanguageMenu;
class NavigationRow;
class Switch;
class ThemedLabel;
class QAbstractButton;
class WarningBanner;

// The settings: the login item, the interface language, the ways on (setup,
// keyboard settings, About) and how keeping works.
class SettingsPage : public QWidget
{
public:
    struct Actions
    {
        std::function<void()> openKeyboardSettings;
        std::function<void()> showAbout;
    };

    SettingsPage(AppModel &model, Actions actions, QWidget *parent = nullptr);

    void render();

    static constexpr int controlWidth = 40;
    static constexpr int rowPadding = 8;

private:
    QWidget *loginRow();
    QWidget *languageRow();
    QWidget *keepingHelp();

    AppModel &m_model;
    Actions m_actions;
    WarningBanner *m_banner;
    QWidget *m_bannerBox;
    Switch *m_login;
    BusyIndicator *m_loginProgress;
    LanguageMenu *m_language;
    NavigationRow *m_reopen;
};
