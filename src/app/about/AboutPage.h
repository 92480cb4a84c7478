#pragma once

#include "app/about/UpdateResultView.h"

#include <QWidget>

class QAbstractButton;
class QProgressBar;
class UpdateViewModel;

// Who this Tolvar is (icon, name, version, description, requirements) and the
// manual update check. Leaving the page abandons a running check.
class AboutPage : public QWidget
{
public:
    // The page takes `model` as its child; release pages go to `open`.
    AboutPage(UpdateViewModel *model, UpdateResultView::OpenURL open, QWidget *parent = nullptr);

    UpdateViewModel *model() const { return m_model; }

    static constexpr int iconSide = 64;
    static constexpr int identitySpacing = 6;
    static constexpr int blockSpacing = 14;
    static constexpr qreal boxRadius = 13;
    static constexpr int boxPadding = 10;
    static constexpr int resultIndent = 32;

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *identityBlock();
    QWidget *updateBox(UpdateResultView::OpenURL open);
    void render();

    UpdateViewModel *m_model;
    QAbstractButton *m_checkButton = nullptr;
    QProgressBar *m_progress = nullptr;
    UpdateResultView *m_result = nullptr;
};
