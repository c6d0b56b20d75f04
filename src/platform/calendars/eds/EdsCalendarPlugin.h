#pragma once

#include "calendar/CalendarProviderPlugin.h"

#include <QObject>

// The Evolution Data Server backend as a plugin ("tarrow-calendar-eds.so").
class EdsCalendarPlugin : public QObject, public CalendarProviderPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID CalendarProviderPlugin_iid)
    Q_INTERFACES(CalendarProviderPlugin)

public:
    QString backendID() const override { return QStringLiteral("eds"); }
    std::unique_ptr<CalendarBackend> createBackend() override;
};
