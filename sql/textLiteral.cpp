#include "sql/textLiteral.h"

#include "sql/variantText.h"

QString TextLiteral(const ovDatabase& database, const QString& text) {
    return mod_ovTools::FormatSqlValue(TextAsIs(text), DataType::NVarChar, database.GetProviderType());
}
