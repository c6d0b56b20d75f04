#pragma once

#include "records/Settings.h"

#include <QString>

class LanguageTable;

// A combination as the settings show it: "Ctrl+Alt+Shift+Super+T", modifiers always in that
// order, key names in the interface language ("Strg+Leertaste" in German). A code outside the key
// table shows as "#code".
QString keyComboText(const KeyCombo &combo, const LanguageTable &texts);
QString keyName(quint16 code, const LanguageTable &texts);
