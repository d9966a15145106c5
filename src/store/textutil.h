#pragma once

#include <QString>

// Small text rules shared by the store and the windows.

// Lower-cases A..Z only; every other character, Chinese included, stays.
QString LowerAscii(const QString &text);

// Removes trailing spaces, and only spaces: a tab or a line break at the
// end is part of the value.
QString RightTrim(const QString &text);
QStringView RightTrimmed(QStringView text);  // the same, without a copy
// Removes spaces at both ends, and only spaces: a tab or a line break is
// part of the value.
QString TrimSpaces(const QString &text);

// The leading decimal number of a text: leading blanks skipped, then digits
// up to the first other character; no digits gives 0. Returned as decimal
// text without leading zeros ("007" -> "7", "yes" -> "0"), so any length of
// digits keeps its value.
QString LeadingNumberText(const QString &text);
// The same number as an int, saturated at INT_MAX.
int LeadingNumber(const QString &text);

// Qt's text widgets use LF alone; bodies are kept with CR LF.
QString ToWidgetText(const QString &body);  // CR LF -> LF
QString FromWidgetText(const QString &text);  // LF -> CR LF
