#pragma once

#include <QWidget>

#include <functional>

class AppModel;
class SearchField;
class SourceList;
class StatusLine;
class WarningBanner;

// What Tolvar is doing and which source it keeps: the warning, the state while
// it is worth a line, the searchable source list, and the footer.
class MainPage : public QWidget
{
public:
    MainPage(AppModel &model, std::function<void()> openKeyboardSettings, QWidget *parent = nullptr);

    void render();
    QString query() const { return m_query; }
    void setQuery(const QString &query);

    static constexpr int spacing = 8;
    static constexpr int footerSpacing = 4;

private:
    void renderSources();

    AppModel &m_model;
    QString m_query;
    WarningBanner *m_banner;
    QWidget *m_statusRow;
    StatusLine *m_status;
    SearchField *m_search;
    SourceList *m_list;
};
