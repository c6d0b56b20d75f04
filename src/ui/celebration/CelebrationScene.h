#pragma once

#include <QColor>
#include <QList>
#include <QPalette>
#include <QPointF>
#include <QSize>
#include <QString>

class QPainter;

// What one screen of a celebration shows, and its confetti: the item's symbol and title, the
// "reached" line and the hint that closes it, over the palette's window colour lit by the item's
// accent. Confetti falls from the top edge for a few seconds; without motion it lies still along
// the edges, where it covers no text.
class CelebrationScene
{
public:
    struct Texts
    {
        QString title;
        QString reached; // "It's here!"
        QString hint; // "Click or press Space to close"
    };

    enum class Confetti { none, still, falling };

    CelebrationScene(Texts texts, QString symbol, QColor accent, QPalette palette, QSize size,
                     Confetti confetti, quint32 seed);

    // Moves the confetti on by `msecs`; false once none is left to move.
    bool advance(int msecs);
    bool isMoving() const;
    void paint(QPainter &painter) const;

    QSize size() const { return m_size; }

private:
    struct Piece
    {
        QPointF position;
        QPointF velocity; // px/s
        qreal angle = 0; // degrees
        qreal spin = 0; // degrees/s
        qreal sway = 0; // phase
        QSizeF size;
        QColor color;
        int delayMSecs = 0; // still to wait before it enters
    };

    void scatterConfetti(quint32 seed);
    void paintBackground(QPainter &painter) const;
    void paintContent(QPainter &painter) const;
    void paintConfetti(QPainter &painter) const;

    Texts m_texts;
    QString m_symbol;
    QColor m_accent;
    QPalette m_palette;
    QSize m_size;
    Confetti m_confetti;
    QList<Piece> m_pieces;
    int m_elapsedMSecs = 0;
};
