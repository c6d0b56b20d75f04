#pragma once

#include <QTranslator>

class LocaleManager;

// Answers qsTrId("dotted.key") in QML from the interface language's table, so the popup's own
// texts come from the same five tables as every other text. Keys the table lacks fall through
// to Qt's own translations.
class TableTranslator : public QTranslator
{
    Q_OBJECT
public:
    explicit TableTranslator(const LocaleManager &locale, QObject *parent = nullptr);

    QString translate(const char *context, const char *sourceText,
                      const char *disambiguation = nullptr, int n = -1) const override;
    bool isEmpty() const override { return false; }

private:
    const LocaleManager &m_locale;
};
