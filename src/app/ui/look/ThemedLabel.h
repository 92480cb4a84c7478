#pragma once

#include <QFont>
#include <QLabel>

#include <functional>

struct Theme;

// Text in the design's font and one of the theme's colours, which it follows
// when the palette changes (light to dark). Wraps, since translations run longer.
class ThemedLabel : public QLabel
{
public:
    using Ink = std::function<QColor(const Theme &)>;

    ThemedLabel(const QString &text, qreal points, QFont::Weight weight, Ink ink, QWidget *parent = nullptr);

    static QColor primary(const Theme &theme);
    static QColor secondary(const Theme &theme);
    static QColor tertiary(const Theme &theme);

    void setInk(Ink ink);
    // One line, shortened with an ellipsis when it does not fit.
    void setElided(bool elided);

    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyInk();

    Ink m_ink;
    bool m_applying = false;
    bool m_elided = false;
};
