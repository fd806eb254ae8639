// The one place where text changes its form between UTF-8 and Qt's. Any
// thread.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace oxlade {

/// Every character is kept, a leading byte-order mark and NULs included. Bytes
/// that are no UTF-8 become U+FFFD.
QString toQString(std::string_view utf8);

/// A lone surrogate becomes a question mark; everything else is kept.
std::string toUtf8(const QString& text);

/// A text as it goes over the bus, where it would end at its first NUL for whoever reads
/// it: each becomes its picture. As many characters, and nothing hidden behind one.
QString withVisibleNuls(QString text);

} // namespace oxlade
