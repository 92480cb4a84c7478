#pragma once

#include <QImage>
#include <QWidget>

// A source's icon, drawn as a template in the primary colour: its shape kept,
// its colours replaced, stretched into a box of 22/24 by 18/24 of the square.
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
