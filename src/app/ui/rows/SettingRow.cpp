#include "app/ui/rows/SettingRow.h"

#include "app/ui/look/SettingIcon.h"
#include "app/ui/look/ThemedLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

SettingRow::SettingRow(const QString &symbol, const QColor &color, const QString &title,
                       const std::optional<QString> &caption, QWidget *trailing, QWidget *parent)
    : QWidget(parent)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(spacing);
    row->addWidget(new SettingIcon(symbol, color, this), 0, Qt::AlignTop);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(3);
    texts->addWidget(new ThemedLabel(title, 12.5, QFont::Medium, ThemedLabel::primary, this));
    if (caption) {
        texts->addWidget(new ThemedLabel(*caption, 11, QFont::Normal, ThemedLabel::secondary, this));
    }
    row->addLayout(texts, 1);

    if (trailing) {
        auto *control = new QHBoxLayout;
        control->setSpacing(8);
        trailing->setParent(this);
        trailing->setMinimumHeight(qMax(trailing->minimumHeight(), trailingMinimumHeight));
        control->addWidget(trailing);
        row->addLayout(control);
        row->setAlignment(control, Qt::AlignTop);
    }
}
