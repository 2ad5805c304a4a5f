#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "sql/ovDatabase.h"
#include "sql/ovQueryConstructor.h"

#include <QFile>
#include <QImage>

using mod_ovTools::FormatSqlValue;

bool ovDatabase::SetLanguageTextValue(const QString& fullTableName, const QString& column, const QString& key,
                                      const QString& text, const QString& language) {
    const auto quoted = [this](const QString& value) {
        return FormatSqlValue(value, DataType::NVarChar, GetProviderType());
    };
    const QString where = QStringLiteral("WHERE LNTBL = ") + quoted(fullTableName) + QStringLiteral(" AND LNFLD = ") +
                          quoted(column) + QStringLiteral(" AND LNKEY = ") + quoted(key) +
                          QStringLiteral(" AND LNLNG = ") + quoted(language);
    ovQueryConstructor query;
    query.ProviderType = GetProviderType();
    query.SetTable(QStringLiteral("SYS_LNG"));
    query.AddUpdateField(QStringLiteral("LNTXT"), text, DataType::NText);
    if (!ExecuteWC(QStringLiteral("SELECT RECORD_ID FROM SYS_LNG ") + where).Eof()) {
        query.WhereString = where;
        Execute(query.MakeQuery(StatementKind::Update));
        return false;
    }
    query.AddUpdateField(QStringLiteral("LNTBL"), fullTableName, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("LNFLD"), column, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("LNKEY"), key, DataType::NVarChar);
    query.AddUpdateField(QStringLiteral("LNLNG"), language, DataType::NVarChar);
    Execute(query.MakeQuery(StatementKind::Insert));
    return true;
}

QByteArray ovDatabase::FileToBinary(const QString& file) {
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        throw ImportError(QStringLiteral("File '%1': %2").arg(file, input.errorString()));
    }
    return input.readAll();
}

void ovDatabase::ConvertToJpeg(const QString& imageFile, const QString& jpegFile, int quality) {
    const QImage image(imageFile);
    if (image.isNull()) {
        throw ImportError(QStringLiteral("Immagine '%1': non si può leggere").arg(imageFile));
    }
    if (!image.save(jpegFile, "JPG", quality)) {
        throw ImportError(QStringLiteral("Immagine '%1': non si può scrivere").arg(jpegFile));
    }
}
