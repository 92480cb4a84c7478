#pragma once

#include "app/about/UpdateViewModel.h"

#include <QUrl>
#include <QWidget>

#include <functional>

class QAbstractButton;
class SymbolView;
class ThemedLabel;

// The line under the update button: what the last check found, or that one
// runs; for a newer release, its version, system need, notes and page link.
class UpdateResultView : public QWidget
{
public:
    using OpenURL = std::function<void(const QUrl &)>;

    UpdateResultView(OpenURL open, QWidget *parent = nullptr);

    void setState(const UpdateViewModel::State &state);

    static constexpr qreal fontPoints = 11;
    static constexpr int releaseSpacing = 8;

private:
    void setStatus(const QString &text, bool accented, const QString &symbol = {});
    void setRelease(const ReleaseManifest &manifest, bool requiresNewerSystem);

    OpenURL m_open;
    QUrl m_releaseAddress;
    SymbolView *m_symbol;
    ThemedLabel *m_status;
    ThemedLabel *m_requires;
    ThemedLabel *m_notes;
    QAbstractButton *m_releasePage;
};
