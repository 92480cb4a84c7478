#pragma once

#include <QToolButton>

#include <optional>

class AppModel;

// The interface language: a borderless pull-down whose label is the language
// in force, offering the system's choice and the five languages by their own names.
class LanguageMenu : public QToolButton
{
public:
    explicit LanguageMenu(AppModel &model, QWidget *parent = nullptr);

    void render();
    QSize sizeHint() const override;

    // The label for a stored code: a language's own name, or the system's
    // choice for none and for any code Tolvar does not offer.
    static QString title(const std::optional<QString> &code);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    AppModel &m_model;
};
