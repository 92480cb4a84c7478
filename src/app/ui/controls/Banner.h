#pragma once

#include <QColor>
#include <QWidget>

#include <functional>
#include <optional>

class QAbstractButton;
class ThemedLabel;

// An inline warning: a tinted box with a symbol, the text and, when given both
// a title and an action, a button that runs it.
class Banner : public QWidget
{
public:
    struct Action
    {
        std::optional<QString> title;
        std::function<void()> run;
    };

    Banner(const QString &text, const QString &symbol, const QColor &tint, Action action = {},
           QWidget *parent = nullptr);

    void setText(const QString &text);
    // The button, present only with a title and an action.
    QAbstractButton *actionButton() const { return m_button; }
    const QString &symbol() const { return m_symbol; }
    const QColor &tint() const { return m_tint; }

    static constexpr qreal radius = 10;
    static constexpr int padding = 10;
    static constexpr qreal fontPoints = 11.5;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_tint;
    QString m_symbol;
    ThemedLabel *m_text;
    QAbstractButton *m_button = nullptr;
};
