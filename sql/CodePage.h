#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>
#include <memory>

/// A code page: how the bytes of a file are read as text. Cheap to copy.
class CodePage {
public:
    /// @param name a code page by name or number: "cp1252", "1252", "windows-1252", "IBM850", "latin1", "UTF-8"; empty
    /// for cp1252. Raises `ImportError` naming a page that is not known.
    explicit CodePage(const QString& name = {});

    /// The name by which the page is known here, e.g. "windows-1252".
    const QString& Name() const { return m_name; }
    /// Appends the text of the bytes, as UTF-8. False when some bytes are no text in this page; each of them stands as
    /// U+FFFD then.
    bool AppendUtf8(QByteArrayView bytes, QByteArray& utf8) const;

private:
    struct Table;
    friend QString DecodeText(QByteArrayView bytes, const CodePage& page);
    friend QByteArray EncodeText(const QString& text, const CodePage& page, QString* lost);

    QString m_name;
    std::shared_ptr<const Table> m_table; ///< null for a page with more than one byte per character
};

/// The text of bytes in a code page. Bytes that are no text in the page come out as U+FFFD.
QString DecodeText(QByteArrayView bytes, const CodePage& page);

/// The bytes of a text in a code page.
/// @param lost gets each character that the page lacks (once, in the order met; empty when there is none), which is
/// written as "?". Without it such a character raises `ImportError` naming the character and the page.
QByteArray EncodeText(const QString& text, const CodePage& page, QString* lost = nullptr);
