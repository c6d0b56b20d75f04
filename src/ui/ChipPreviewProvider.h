#pragma once

#include "countdown/MenubarChipPresentation.h"

#include <QQuickImageProvider>

#include <functional>
#include <optional>

// Serves previews of the panel chip to QML as "image://chip/<source>/<revision>": the source
// names who describes the chip ("editor", "settings"); the revision only makes a new URL when the
// chip changes. Drawn at twice the size for sharp text on any screen.
class ChipPreviewProvider final : public QQuickImageProvider
{
public:
    using Source = std::function<std::optional<MenubarChipPresentation>(const QString &name)>;

    static constexpr qreal scale = 2.0;

    explicit ChipPreviewProvider(Source source);
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    Source m_source;
};
