#pragma once

#include <QWidget>

#include <functional>

class AppModel;
class Banner;
class IconButton;
class PrimaryButton;
class SearchField;
class SourceList;
class StepDots;
class Switch;
class ThemedLabel;
class QVBoxLayout;

// The setup flow's two pages: choose the source to keep, then confirm it with
// keeping and the login item. The choices live in the model until Finish.
class OnboardingView : public QWidget
{
public:
    OnboardingView(AppModel &model, std::function<void()> openKeyboardSettings, QWidget *parent = nullptr);

    void render();
    QString query() const { return m_query; }

    static constexpr int spacing = 14;
    static constexpr int pageCount = 2;

private:
    QWidget *selectionPage(std::function<void()> openKeyboardSettings);
    QWidget *confirmationPage();
    QWidget *navigationRow();
    void renderSources();
    void renderConfirmation();

    AppModel &m_model;
    QString m_query;

    ThemedLabel *m_title;
    ThemedLabel *m_body;
    QWidget *m_selection;
    SearchField *m_search;
    SourceList *m_list;
    QWidget *m_confirmation;
    QVBoxLayout *m_artworkBox;
    QString m_artworkFor;
    ThemedLabel *m_target;
    Switch *m_keep;
    Switch *m_login;
    QWidget *m_bannerBox;
    Banner *m_banner = nullptr;
    IconButton *m_back;
    StepDots *m_dots;
    PrimaryButton *m_next;
};
