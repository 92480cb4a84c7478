#pragma once

#include <QImage>
#include <QWidget>

// A source's icon in a box of 22/24 by 18/24 of the square: a template (a label
// or a one-ink glyph) stretched and drawn in the primary colour, any other
// image, such as a coloured logo, fitted in with its own colours.
class SourceArtwork : public QWidget
{
public:
    explicit SourceArtwork(const QImage &image, int size = defaultSize, QWidget *parent = nullptr);

    static constexpr int defaultSize = 24;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_image;
};
