#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "sql/ovDatabase.h"
#include "sql/ovQueryConstructor.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

#include <QFile>
#include <QImage>
#include <QImageReader>

#include <optional>

using mod_ovTools::FormatSqlValue;

namespace {

/// The text that the first row of a query gives; none without a row.
std::optional<QString> FirstText(const Recordset& rows) {
    return rows.Eof() ? std::nullopt : std::optional(mod_ovTools::ToText(rows.Fields(0).Value()));
}

} // namespace

bool ovDatabase::SetLanguageTextValue(const QString& fullTableName, const QString& column, const QString& key,
                                      const QString& text, const QString& language, const TextWriter& write) {
    const auto quoted = [this](const QString& value) { return TextLiteral(*this, value); };
    const QString where = QStringLiteral("WHERE LNTBL = ") + quoted(fullTableName) + QStringLiteral(" AND LNFLD = ") +
                          quoted(column) + QStringLiteral(" AND LNKEY = ") + quoted(key) +
                          QStringLiteral(" AND LNLNG = ") + quoted(language);
    ovQueryConstructor query;
    query.ProviderType = GetProviderType();
    query.SetTable(QStringLiteral("SYS_LNG"));
    query.AddUpdateField(QStringLiteral("LNTXT"), TextAsIs(text), DataType::NText);
    const QString which = fullTableName + u'\n' + column + u'\n' + language;
    auto texts = m_newTexts.find(key);
    if (texts == m_newTexts.end() && IsAbsent(QStringLiteral("SYS_LNG"), QStringLiteral("LNKEY"), key)) {
        texts = m_newTexts.insert(key, {});
    }
    // Of one that was written here the database is asked all the same: a statement may have deleted it since.
    const bool isKnownNew = texts != m_newTexts.end() && !texts->contains(which);
    const std::optional<QString> there =
        isKnownNew ? std::nullopt : FirstText(ExecuteWC(QStringLiteral("SELECT LNTXT FROM SYS_LNG ") + where));
    if (there) {
        if (*there != text) {
            query.WhereString = where;
            write ? write(query) : static_cast<void>(Execute(query.MakeStatement(StatementKind::Update)));
        }
        return false;
    }
    query.AddUpdateField(QStringLiteral("LNTBL"), fullTableName, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("LNFLD"), column, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("LNKEY"), TextAsIs(key), DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("LNLNG"), language, DataType::NVarChar);
    write ? write(query) : InsertRow(query);
    if (texts != m_newTexts.end()) {
        texts->insert(which);
    }
    return true;
}

QByteArray ovDatabase::FileToBinary(const QString& file) {
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        throw ImportError(QStringLiteral("File '%1': %2").arg(file, input.errorString()));
    }
    return input.readAll();
}

namespace {

PictureError Unreadable(const QString& file, const QString& why) {
    return PictureError(QStringLiteral("Immagine '%1': %2").arg(file, why));
}

/// The format of a picture by its first bytes, among those that may be read; empty for any other. What else the system
/// can decode, such as drawings that name further files, never sees a foreign file.
QByteArray FormatOf(const QString& file) {
    static const QVector<std::pair<QByteArray, QByteArray>> formats{
        {"BM", "bmp"}, {"\xff\xd8\xff", "jpeg"}, {"\x89PNG\r\n\x1a\n", "png"}, {"GIF8", "gif"}};
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        throw Unreadable(file, input.errorString());
    }
    constexpr qint64 longest = 8;
    const QByteArray begin = input.read(longest);
    const auto found = std::find_if(formats.cbegin(), formats.cend(),
                                    [&begin](const auto& format) { return begin.startsWith(format.first); });
    return found == formats.cend() ? QByteArray() : found->second;
}

QImage ReadPicture(const QString& file) {
    const QByteArray format = FormatOf(file);
    if (format.isEmpty()) {
        throw Unreadable(file, QStringLiteral("non è un'immagine BMP, JPEG, PNG o GIF"));
    }
    constexpr int most = 256; // megabytes, whatever the library's own limit is
    QImageReader::setAllocationLimit(most);
    QImageReader reader(file, format);
    reader.setAutoDetectImageFormat(false);
    constexpr qint64 bytesPerPoint = 4;
    constexpr qint64 megabyte = qint64(1024) * 1024;
    const QSize size = reader.size();
    if (size.isValid() && bytesPerPoint * size.width() * size.height() > most * megabyte) {
        throw Unreadable(file, QStringLiteral("è troppo grande: %1 x %2 punti, più di %3 MB in memoria")
                                   .arg(size.width())
                                   .arg(size.height())
                                   .arg(most));
    }
    QImage image = reader.read();
    if (image.isNull()) {
        throw Unreadable(file, QStringLiteral("non si può leggere"));
    }
    return image;
}

} // namespace

void ovDatabase::ConvertToJpeg(const QString& imageFile, const QString& jpegFile, int quality) {
    if (!ReadPicture(imageFile).save(jpegFile, "JPG", quality)) {
        throw ImportError(QStringLiteral("Immagine '%1': non si può scrivere").arg(jpegFile));
    }
}
