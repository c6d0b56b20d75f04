#include "platform/calendars/eds/EdsCalendarPlugin.h"

#include "platform/calendars/eds/EdsProvider.h"

#include <QLoggingCategory>

#include <gio/gio.h>

std::unique_ptr<CalendarBackend> EdsCalendarPlugin::createBackend()
{
    // Evolution Data Server reads its settings through GSettings, and GLib aborts the process
    // when the schemas it asks for are missing (a broken XDG_DATA_DIRS, a half-installed EDS):
    // without them Tarrow runs on without the desktop's calendars.
    GSettingsSchemaSource *schemas = g_settings_schema_source_get_default();
    GSettingsSchema *schema = schemas
        ? g_settings_schema_source_lookup(schemas, "org.gnome.evolution-data-server", TRUE)
        : nullptr;
    if (!schema) {
        qCWarning(lcEdsProvider) << "Skipped the Evolution Data Server calendars: its settings "
                                    "schemas are not installed (check XDG_DATA_DIRS)";
        return nullptr;
    }
    g_settings_schema_unref(schema);
    return std::make_unique<EdsProvider>();
}
