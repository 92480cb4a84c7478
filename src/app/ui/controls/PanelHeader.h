#pragma once

#include <QWidget>

class ThemedLabel;

// The title bar of a panel page: leading content, the title, and trailing
// content at the far end. In the window it keeps clear of the title-bar buttons.
class PanelHeader : public QWidget
{
public:
    PanelHeader(bool inWindow, const QString &title, QWidget *leading = nullptr, QWidget *trailing = nullptr,
                QWidget *parent = nullptr);

    void setTitle(const QString &title);

    static constexpr int dropDownHeight = 28;
    static constexpr int windowHeight = 30;
    static constexpr int bottomPadding = 10;
    static constexpr int spacing = 6;
#ifdef Q_OS_MACOS
    // The window's own buttons sit over the content, left of the title.
    static constexpr int windowButtonsClearance = 44;
#else
    // Linux window managers draw their buttons in a title bar of their own.
    static constexpr int windowButtonsClearance = 0;
#endif

private:
    ThemedLabel *m_title;
};
