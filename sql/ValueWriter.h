#pragma once

#include <QStringView>

/// Takes a value in the form that `mod_ovTools::WriteSqlValue` has found for it: as a literal in a text, or apart from
/// it, for a statement that is prepared.
class ValueWriter {
public:
    virtual ~ValueWriter() = default;

    virtual void Null() = 0;
    virtual void Text(QStringView text) = 0; ///< without quotes
    virtual void Whole(qint64 number) = 0;
    virtual void Number(double number) = 0;  ///< finite
    virtual void Words(QStringView sql) = 0; ///< no value: written as it is

protected:
    ValueWriter() = default;
    ValueWriter(const ValueWriter&) = default;
    ValueWriter& operator=(const ValueWriter&) = default;
};
