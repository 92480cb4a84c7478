#pragma once

#include <QWidget>

#include <functional>

class QAbstractButton;
class QLineEdit;

// The filter field of a source list: a magnifying glass, the text and, while
// there is text, a button that clears it. The text field carries the
// identifier; the clear button the identifier with "-clear".
class SearchField : public QWidget
{
public:
    explicit SearchField(const QString &identifier, QWidget *parent = nullptr);

    QString text() const;
    void setText(const QString &text);
    // Called with every change of the text, typed or cleared.
    void onTextChanged(std::function<void(const QString &)> handler);

    QLineEdit *lineEdit() const { return m_edit; }

    static constexpr int fieldHeight = 28;
    static constexpr int horizontalPadding = 9;
    static constexpr qreal radius = 8;
    static constexpr qreal fontPoints = 12;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLineEdit *m_edit;
    QAbstractButton *m_clear;
    std::function<void(const QString &)> m_handler;
};
