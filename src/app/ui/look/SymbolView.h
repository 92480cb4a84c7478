#pragma once

#include "app/ui/look/Symbols.h"

#include <QWidget>

#include <functional>

struct Theme;

// A symbol in a fixed box, tinted from the theme when painted; decoration, so
// hidden from accessibility.
class SymbolView : public QWidget
{
public:
    using Tint = std::function<QColor(const Theme &)>;

    SymbolView(const QString &symbol, qreal points, Tint tint, Symbols::Weight weight, QWidget *parent = nullptr);

    void setSymbol(const QString &symbol);
    QString symbol() const { return m_symbol; }
    void setTint(Tint tint);
    // The box, when wider or taller than the symbol.
    void setBox(QSize box);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    qreal m_points;
    Tint m_tint;
    Symbols::Weight m_weight;
};
