#pragma once

#include <QQuickImageProvider>

// Serves the bundled item symbols to QML as "image://symbol/<name>/<rrggbb>", e.g.
// "image://symbol/party.popper.fill/202020" (no '#': it would start a URL fragment). Unknown or
// empty names draw the fallback symbol. Names starting with "ui." are the interface's own glyphs
// ("ui.magnifyingglass", "ui.pin.fill").
class SymbolImageProvider final : public QQuickImageProvider
{
public:
    SymbolImageProvider();
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};
