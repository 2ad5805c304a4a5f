#pragma once

#include "sql/CodePage.h"
#include "sql/engine.h"

#include <QByteArrayView>

namespace sources {

/// The code page of the settings, for files that cannot tell a wrong one: without the "!" that puts it above what a
/// file tells.
inline QString PlainPage(const ConnectionSettings& settings) {
    return settings.codePage.endsWith(u'!') ? settings.codePage.chopped(1) : settings.codePage;
}

/// Watches over the texts of a file that does not tell its code page, where no setting tells it either: the first text
/// that is not plain ASCII is told, with the page that it was read in.
class UntoldPage {
public:
    /// @param tellsPage whether the file itself tells its code page
    /// @param file,page names of the file and of the page that its texts are read in
    UntoldPage(const ConnectionSettings& settings, bool tellsPage, QString file, QString page)
        : m_settings(settings),
          m_file(std::move(file)),
          m_page(std::move(page)),
          m_watches(!tellsPage && settings.codePage.isEmpty() && settings.note) {}

    /// Looks at a text of a row. @param column its column; empty for the names of the columns
    /// @param bytes the text as it stands in the file, where it is at hand: it is shown as other pages read it
    void Look(QByteArrayView utf8, qint64 row, const QString& column, QByteArrayView bytes = {}) {
        if (m_watches && !IsAscii(utf8)) {
            m_watches = false;
            m_settings.note(QStringLiteral("CODE PAGE NON DICHIARATA: il file '%1' è letto in %2 (prima lettera "
                                           "accentata: riga %3%4, '%5'%6); se le lettere accentate sono sbagliate, "
                                           "indicare la code page con CodePage nella sezione [IMPORT] (per esempio "
                                           "cp850)")
                                .arg(m_file, m_page, QString::number(row),
                                     column.isEmpty() ? QString() : QStringLiteral(", colonna ") + column,
                                     QString::fromUtf8(utf8).left(shown), InOtherPages(bytes)));
        }
    }

private:
    static constexpr qsizetype shown = 60;
    static bool IsAscii(QByteArrayView text) {
        return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    }

    QString InOtherPages(QByteArrayView bytes) const {
        QString samples;
        for (const char* name : {"cp1252", "cp850"}) {
            const CodePage page{QLatin1String(name)};
            if (!bytes.isEmpty() && page.Name() != m_page) {
                samples += QStringLiteral("; in %1 sarebbe '%2'")
                               .arg(QLatin1String(name), DecodeText(bytes, page).trimmed().left(shown));
            }
        }
        return samples;
    }

    const ConnectionSettings& m_settings;
    QString m_file;
    QString m_page;
    bool m_watches;
};

} // namespace sources
