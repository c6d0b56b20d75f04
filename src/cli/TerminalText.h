#pragma once

#include <QString>

// Text from the data folder made safe to print for people. Control characters could move the
// cursor, change colours or the window title, or start a row of their own; they are shown as
// escapes instead: "\n", "\t", "\r", "\e", "\x7f", "\u{202e}" (C0 and C1 controls, DEL, line and
// paragraph separators, and the bidirectional overrides that reorder what follows). Everything
// else, emoji included, passes unchanged. JSON output needs none of this: its strings are
// escaped already.
QString terminalSafe(QStringView text);
