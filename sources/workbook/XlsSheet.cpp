#include "sources/workbook/XlsSheet.h"

#include <bit>
#include <cmath>

namespace sources {

namespace {

constexpr qsizetype ColumnAt = 2;
constexpr qsizetype FormatAt = 4;
constexpr qsizetype ValueAt = 6;

/// A number of four bytes: a whole one or the upper half of a double, may be times 100.
double NumberOfRk(quint32 rk) {
    constexpr quint32 isHundredfold = 1;
    constexpr quint32 isWhole = 2;
    constexpr int marks = 2;
    constexpr int halfOfDouble = 32;
    const double number = (rk & isWhole) != 0 ? static_cast<qint32>(rk) >> marks
                                              : std::bit_cast<double>(quint64(rk & ~quint32(3)) << halfOfDouble);
    return (rk & isHundredfold) != 0 ? number / 100 : number;
}

QString ErrorText(quint8 code) {
    switch (code) {
    case 0x00:
        return QStringLiteral("#NULL!");
    case 0x07:
        return QStringLiteral("#DIV/0!");
    case 0x0f:
        return QStringLiteral("#VALUE!");
    case 0x17:
        return QStringLiteral("#REF!");
    case 0x1d:
        return QStringLiteral("#NAME?");
    case 0x24:
        return QStringLiteral("#NUM!");
    case 0x2a:
        return QStringLiteral("#N/A");
    default:
        return QStringLiteral("#%1").arg(code);
    }
}

} // namespace

bool XlsSheet::IsCell() const {
    switch (m_records.Type()) {
    case Biff::Formula:
    case Biff::MulRk:
    case Biff::RString:
    case Biff::LabelSst:
    case Biff::Number:
    case Biff::Label:
    case Biff::BoolErr:
    case Biff::Rk:
        return true;
    default:
        return false;
    }
}

bool XlsSheet::Next(SheetRow& row) {
    m_row.cells.clear();
    while (!m_hasEnded && (m_isPending || m_records.Next())) {
        const Biff type = m_records.Type();
        if (m_depth == 0 && type != Biff::Bof) {
            throw ImportError(QStringLiteral("il foglio non comincia dove il file lo dice: il file è danneggiato, "
                                             "aprirlo con Excel e salvarlo di nuovo"));
        }
        m_depth += type == Biff::Bof ? 1 : 0;
        if (type == Biff::Eof) {
            m_hasEnded = --m_depth <= 0;
        } else if (m_depth == 1 && type == Biff::MergeCells) {
            ReadMerged();
        } else if (m_depth == 1 && type == Biff::Row) {
            constexpr quint16 hidden = 0x20;
            if ((m_records.At<quint16>(12) & hidden) != 0) {
                m_hidden.insert(m_records.At<quint16>(0) + 1);
            }
        } else if (m_depth == 1 && IsCell()) {
            const qint64 number = m_records.At<quint16>(0) + 1;
            m_isPending = !m_isPending && !m_row.cells.empty() && number != m_row.number;
            if (m_isPending) {
                break;
            }
            if (number < m_row.number) {
                throw ImportError(QStringLiteral("la riga %1 viene dopo la riga %2: il file è danneggiato, aprirlo con "
                                                 "Excel e salvarlo di nuovo")
                                      .arg(number)
                                      .arg(m_row.number));
            }
            m_row.number = number;
            ReadCells();
        }
    }
    if (!m_hasEnded && !m_isPending) {
        throw ImportError(QStringLiteral("il foglio finisce prima della sua fine: il file è incompleto, copiarlo di "
                                         "nuovo dall'origine"));
    }
    row.number = m_row.number;
    row.cells.swap(m_row.cells);
    row.isHidden = m_hidden.contains(row.number);
    return !row.cells.empty();
}

void XlsSheet::ReadCells() {
    SheetCell cell;
    cell.column = m_records.At<quint16>(ColumnAt);
    cell.format = m_workbook.Format(m_records.At<quint16>(FormatAt));
    switch (m_records.Type()) {
    case Biff::Formula:
        ReadFormula(cell);
        break;
    case Biff::MulRk: {
        constexpr qsizetype size = 6;
        for (qsizetype at = FormatAt; at + size + 2 <= m_records.Data().size(); at += size, ++cell.column) {
            cell.format = m_workbook.Format(m_records.At<quint16>(at));
            Add(cell, NumberOfRk(m_records.At<quint32>(at + 2)));
        }
        break;
    }
    case Biff::LabelSst: {
        const auto index = m_records.At<quint32>(ValueAt);
        if (index < m_workbook.Texts().Count()) {
            cell.text = m_workbook.Texts().At(index).toByteArray();
        } else {
            cell.kind = SheetCell::Kind::Unreadable;
            cell.text = QStringLiteral("il testo numero %1 non è nel file, che è danneggiato").arg(index).toUtf8();
        }
        if (!cell.text.isEmpty()) {
            m_row.cells.push_back(cell);
        }
        break;
    }
    case Biff::Number:
        Add(cell, std::bit_cast<double>(m_records.At<quint64>(ValueAt)));
        break;
    case Biff::Rk:
        Add(cell, NumberOfRk(m_records.At<quint32>(ValueAt)));
        break;
    case Biff::BoolErr:
        AddBoolOrError(cell, m_records.At<quint8>(ValueAt), m_records.At<quint8>(ValueAt + 1) != 0);
        break;
    default:
        Add(cell, m_workbook.Text(m_records, ValueAt, 2));
    }
}

/// The result is a number, or says what it is with its last two bytes.
void XlsSheet::ReadFormula(SheetCell cell) {
    constexpr quint16 isOther = 0xffff;
    constexpr qsizetype marksAt = ValueAt + 8;
    constexpr quint16 toBeReckoned = 2; // when the file is opened: programs that do not reckon write 0 with it
    if (m_records.At<quint16>(ValueAt + 6) != isOther) {
        const auto number = std::bit_cast<double>(m_records.At<quint64>(ValueAt));
        if (number == 0 && (m_records.At<quint16>(marksAt) & toBeReckoned) != 0) {
            cell.kind = SheetCell::Kind::NoValue;
            m_row.cells.push_back(std::move(cell));
        } else {
            Add(cell, number);
        }
        return;
    }
    const auto kind = m_records.At<quint8>(ValueAt);
    const auto value = m_records.At<quint8>(ValueAt + 2);
    if (kind == 1 || kind == 2) {
        AddBoolOrError(cell, value, kind == 2);
    } else if (kind == 0) {
        AddFormulaText(cell);
    } else {
        cell.kind = SheetCell::Kind::EmptyText;
        m_row.cells.push_back(std::move(cell));
    }
}

/// The text follows, may be behind a record about formulas that cells share. Where it is missing the next cell follows.
void XlsSheet::AddFormulaText(SheetCell cell) {
    auto next = m_records.NextType();
    while (next == Biff::Array || next == Biff::Table || next == Biff::SharedFormula || next == Biff::Continue) {
        m_records.Next();
        next = m_records.NextType();
    }
    if (next == Biff::String) {
        m_records.Next();
        Add(std::move(cell), m_workbook.Text(m_records, 0, 2));
        return;
    }
    cell.kind = SheetCell::Kind::NoValue;
    m_row.cells.push_back(std::move(cell));
}

void XlsSheet::Add(SheetCell cell, const QString& text) {
    cell.text = text.toUtf8();
    if (!cell.text.isEmpty()) {
        m_row.cells.push_back(std::move(cell));
    }
}

void XlsSheet::Add(SheetCell cell, double number) {
    cell.kind = std::isfinite(number) ? SheetCell::Kind::Number : SheetCell::Kind::Unreadable;
    cell.number = number;
    cell.text = std::isfinite(number) ? QByteArray() : QByteArrayLiteral("non è un numero");
    m_row.cells.push_back(std::move(cell));
}

void XlsSheet::AddBoolOrError(SheetCell cell, quint8 value, bool isError) {
    cell.kind = isError ? SheetCell::Kind::Error : SheetCell::Kind::Boolean;
    cell.number = value != 0 ? 1 : 0;
    cell.text = isError ? ErrorText(value).toUtf8() : QByteArray();
    m_row.cells.push_back(std::move(cell));
}

void XlsSheet::ReadMerged() {
    constexpr qsizetype size = 8;
    const int count = m_records.At<quint16>(0);
    for (qsizetype at = 2; at < 2 + count * size; at += size) {
        const auto corner = [&](qsizetype rowAt, qsizetype columnAt) -> QString {
            return ColumnLetters(m_records.At<quint16>(columnAt)) + QString::number(m_records.At<quint16>(rowAt) + 1);
        };
        m_merged.append(corner(at, at + 4) + u':' + corner(at + 2, at + 6));
    }
}

} // namespace sources
