#include "ui/celebration/CelebrationScene.h"

#include "platform/tray/IconSet.h"
#include "records/EventColor.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QRadialGradient>
#include <QRandomGenerator>

#include <cmath>

namespace {

constexpr qreal Gravity = 90.0; // px/s², gentle: paper, not stones
constexpr int FallingPieces = 140;
constexpr int StillPieces = 70;

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < 0.5;
}

// The accent as text on the window colour: darker on light windows, lighter on dark ones, until
// it reads (contrast of about 4.5:1 against the background).
QColor readableAccent(const QColor &accent, const QColor &background)
{
    const auto luminance = [](const QColor &c) {
        const auto channel = [](qreal v) {
            return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF())
            + 0.0722 * channel(c.blueF());
    };
    const auto contrast = [&](const QColor &a, const QColor &b) {
        const qreal la = luminance(a), lb = luminance(b);
        return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
    };
    QColor color = accent;
    const bool darkBackground = background.lightnessF() < 0.5;
    for (int step = 0; step < 12 && contrast(color, background) < 4.5; ++step)
        color = darkBackground ? color.lighter(112) : color.darker(112);
    return color;
}

QFont scaledFont(qreal pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(std::max(1, qRound(pixelSize)));
    font.setWeight(weight);
    return font;
}

} // namespace

CelebrationScene::CelebrationScene(Texts texts, QString symbol, QColor accent, QPalette palette,
                                   QSize size, Confetti confetti, quint32 seed)
    : m_texts(std::move(texts))
    , m_symbol(std::move(symbol))
    , m_accent(accent)
    , m_palette(std::move(palette))
    , m_size(size)
    , m_confetti(confetti)
{
    scatterConfetti(seed);
}

void CelebrationScene::scatterConfetti(quint32 seed)
{
    if (m_confetti == Confetti::none)
        return;
    QRandomGenerator random(seed);
    const auto uniform = [&](qreal from, qreal to) {
        return from + random.generateDouble() * (to - from);
    };
    QList<QColor> colors;
    for (EventColor color : AllEventColors)
        colors.append(QColor::fromRgb(rgbOf(color)));
    colors.append(m_accent);
    colors.append(m_accent); // the item's own colour a little more often

    const qreal w = m_size.width(), h = m_size.height();
    const int count = m_confetti == Confetti::falling ? FallingPieces : StillPieces;
    for (int i = 0; i < count; ++i) {
        Piece piece;
        piece.size = QSizeF(uniform(6, 10), uniform(10, 16));
        piece.color = colors.at(random.bounded(int(colors.size())));
        piece.angle = uniform(0, 360);
        if (m_confetti == Confetti::falling) {
            piece.position = QPointF(uniform(0, w), uniform(-0.25 * h, -20));
            piece.velocity = QPointF(uniform(-30, 30), uniform(60, 160));
            piece.spin = uniform(-240, 240);
            piece.sway = uniform(0, 2 * M_PI);
            piece.delayMSecs = random.bounded(1500);
        } else {
            // Along the top and bottom bands, clear of the centred text.
            const bool top = i % 2 == 0;
            piece.position =
                QPointF(uniform(0, w), top ? uniform(0, 0.2 * h) : uniform(0.8 * h, h));
        }
        m_pieces.append(piece);
    }
}

bool CelebrationScene::isMoving() const
{
    if (m_confetti != Confetti::falling)
        return false;
    const qreal bottom = m_size.height() + 20;
    return std::any_of(m_pieces.cbegin(), m_pieces.cend(),
                       [&](const Piece &piece) { return piece.position.y() < bottom; });
}

bool CelebrationScene::advance(int msecs)
{
    if (m_confetti != Confetti::falling)
        return false;
    m_elapsedMSecs += msecs;
    const qreal dt = msecs / 1000.0;
    for (Piece &piece : m_pieces) {
        if (piece.delayMSecs > 0) {
            piece.delayMSecs -= msecs;
            continue;
        }
        piece.velocity.ry() += Gravity * dt;
        const qreal drift = 40.0 * std::sin(piece.sway + m_elapsedMSecs / 350.0);
        piece.position += QPointF((piece.velocity.x() + drift) * dt, piece.velocity.y() * dt);
        piece.angle += piece.spin * dt;
    }
    return isMoving();
}

void CelebrationScene::paint(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    paintConfetti(painter);
    paintContent(painter);
}

void CelebrationScene::paintBackground(QPainter &painter) const
{
    const QRectF rect(QPointF(0, 0), QSizeF(m_size));
    const QColor window = m_palette.color(QPalette::Window);
    painter.fillRect(rect, window);
    QColor glow = m_accent;
    glow.setAlphaF(isDark(m_palette) ? 0.30 : 0.22);
    QColor clear = m_accent;
    clear.setAlphaF(0.0);
    QRadialGradient gradient(rect.center(), 0.6 * std::max(rect.width(), rect.height()));
    gradient.setColorAt(0.0, glow);
    gradient.setColorAt(1.0, clear);
    painter.fillRect(rect, gradient);
}

void CelebrationScene::paintConfetti(QPainter &painter) const
{
    painter.save();
    painter.setPen(Qt::NoPen);
    for (const Piece &piece : m_pieces) {
        if (piece.delayMSecs > 0)
            continue;
        painter.save();
        painter.translate(piece.position);
        painter.rotate(piece.angle);
        // Turning paper: its apparent width follows the spin.
        const qreal turn = std::abs(std::cos(qDegreesToRadians(piece.angle * 1.7)));
        const QSizeF size(piece.size.width() * (0.25 + 0.75 * turn), piece.size.height());
        painter.setBrush(piece.color);
        painter.drawRoundedRect(QRectF(QPointF(-size.width() / 2, -size.height() / 2), size), 1.5,
                                1.5);
        painter.restore();
    }
    painter.restore();
}

void CelebrationScene::paintContent(QPainter &painter) const
{
    const qreal w = m_size.width(), h = m_size.height();
    const qreal unit = std::clamp(std::min(w, h) / 18.0, 18.0, 64.0);
    const QColor text = m_palette.color(QPalette::WindowText);
    const QColor accentText = readableAccent(m_accent, m_palette.color(QPalette::Window));

    const QFont titleFont = scaledFont(unit * 1.5, QFont::Bold);
    const QFont reachedFont = scaledFont(unit * 0.9, QFont::DemiBold);
    const QFont hintFont = scaledFont(std::max(13.0, unit * 0.45), QFont::Normal);
    const QFontMetricsF titleMetrics(titleFont), reachedMetrics(reachedFont);

    const qreal symbolSide = unit * 3.0;
    const qreal gap = unit * 0.6;
    const qreal blockHeight =
        symbolSide + gap + titleMetrics.height() + gap * 0.5 + reachedMetrics.height();
    qreal y = (h - blockHeight) / 2.0;

    const QImage symbol = IconSet::render(m_symbol, QSizeF(symbolSide, symbolSide),
                                          painter.device()->devicePixelRatioF(), m_accent);
    painter.drawImage(QRectF((w - symbolSide) / 2.0, y, symbolSide, symbolSide), symbol);
    y += symbolSide + gap;

    painter.setFont(titleFont);
    painter.setPen(text);
    const QString title = titleMetrics.elidedText(m_texts.title, Qt::ElideRight, w * 0.8);
    painter.drawText(QRectF(0, y, w, titleMetrics.height()), Qt::AlignCenter, title);
    y += titleMetrics.height() + gap * 0.5;

    painter.setFont(reachedFont);
    painter.setPen(accentText);
    painter.drawText(QRectF(0, y, w, reachedMetrics.height()), Qt::AlignCenter, m_texts.reached);

    painter.setFont(hintFont);
    QColor hint = text;
    hint.setAlphaF(0.6);
    painter.setPen(hint);
    const qreal hintHeight = QFontMetricsF(hintFont).height();
    painter.drawText(QRectF(0, h - unit * 1.2 - hintHeight, w, hintHeight), Qt::AlignCenter,
                     m_texts.hint);
}
