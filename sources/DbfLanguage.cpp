#include "sources/Dbf.h"

#include <QHash>

#include <optional>

namespace sources {

std::optional<QString> CodePageOfLanguage(unsigned char language) {
    // Several languages share a page; the bytes are those that dBase and FoxPro write.
    static const QHash<int, int> pages{
        {0x01, 437},  {0x02, 850},  {0x03, 1252}, {0x08, 865},  {0x09, 437},  {0x0a, 850},  {0x0b, 437},  {0x0d, 437},
        {0x0e, 850},  {0x0f, 437},  {0x10, 850},  {0x11, 437},  {0x12, 850},  {0x13, 932},  {0x14, 850},  {0x15, 437},
        {0x16, 850},  {0x17, 865},  {0x18, 437},  {0x19, 437},  {0x1a, 850},  {0x1b, 437},  {0x1c, 863},  {0x1d, 850},
        {0x1f, 852},  {0x22, 852},  {0x23, 852},  {0x24, 860},  {0x25, 850},  {0x26, 866},  {0x37, 850},  {0x40, 852},
        {0x4d, 936},  {0x4e, 949},  {0x4f, 950},  {0x50, 874},  {0x57, 1252}, {0x58, 1252}, {0x59, 1252}, {0x64, 852},
        {0x65, 866},  {0x66, 865},  {0x67, 861},  {0x6a, 737},  {0x6b, 857},  {0x6c, 863},  {0x78, 950},  {0x79, 949},
        {0x7a, 936},  {0x7b, 932},  {0x7c, 874},  {0x7d, 1255}, {0x7e, 1256}, {0x86, 737},  {0x87, 852},  {0x88, 857},
        {0xc8, 1250}, {0xc9, 1251}, {0xca, 1254}, {0xcb, 1253}, {0xcc, 1257}};
    const auto page = pages.constFind(language);
    return page == pages.constEnd() ? std::nullopt : std::optional(QStringLiteral("cp%1").arg(page.value()));
}

} // namespace sources
