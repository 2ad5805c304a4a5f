#include "sql/mod_ovTools.h"

#include <QLocale>

#ifdef Q_OS_WIN
#include <windows.h>

#include <array>
#endif

namespace mod_ovTools {

namespace {

constexpr int decimalItem = 14;
constexpr int thousandsItem = 15;

LocaleSeparators SeparatorsOf(const QLocale& locale) {
    // Qt gives the plain "C" locale a thousands separator; the system's own "C" has none, and "12,5" must not read 125.
    const bool plain = locale.language() == QLocale::C;
    return {locale.decimalPoint(), plain ? QString() : locale.groupSeparator()};
}

#ifdef Q_OS_WIN
QString SystemLocaleText(LCTYPE item) {
    std::array<wchar_t, 16> text{};
    const int size = GetLocaleInfoEx(LOCALE_NAME_SYSTEM_DEFAULT, item, text.data(), static_cast<int>(text.size()));
    return size > 0 ? QString::fromWCharArray(text.data()) : QStringLiteral("-1");
}
#endif

} // namespace

const LocaleSeparators& UserSeparators() {
    static const LocaleSeparators separators = SeparatorsOf(QLocale::system());
    return separators;
}

QString GetLocaleString(int item, [[maybe_unused]] bool systemLocale) {
    if (item != decimalItem && item != thousandsItem) {
        return QStringLiteral("-1");
    }
#ifdef Q_OS_WIN
    if (systemLocale) {
        return SystemLocaleText(item == decimalItem ? LOCALE_SDECIMAL : LOCALE_STHOUSAND);
    }
#endif
    return item == decimalItem ? UserSeparators().decimal : UserSeparators().thousands;
}

} // namespace mod_ovTools
