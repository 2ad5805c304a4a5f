// What stands between the header of a sheet and the first row that is read: captions, or data already.

#include "sources/workbook/captions.h"
#include "sources/workbook/SheetLoader.h"

namespace sources {

const SheetCell* SheetLoader::CodeIn(const SheetRow& row) const {
    const auto code = std::ranges::find_if(
        row.cells, [this](const SheetCell& cell) { return m_end.contains(cell.column) && !IsBlank(cell); });
    return code == row.cells.end() ? nullptr : &*code;
}

SheetLoader::CodesBelow SheetLoader::LookBelow() const {
    const auto reader = m_workbook.Read(m_sheet);
    CodesBelow codes;
    SheetRow row;
    for (qint64 next = m_table.firstRow; Next(*reader, row);) {
        if (row.number < next) {
            continue;
        }
        const SheetCell* code = row.number == next++ ? CodeIn(row) : nullptr;
        if (code == nullptr) {
            break;
        }
        const bool isCode = code->kind == SheetCell::Kind::Text || code->kind == SheetCell::Kind::Number ||
                            code->kind == SheetCell::Kind::Date;
        if (isCode && TextOf(*code).compare(NameOf(code->column), Qt::CaseInsensitive) != 0) {
            ++(HasDigit(*code) ? codes.withDigit : codes.ofWords);
        }
    }
    return codes;
}

SheetLoader::Above SheetLoader::KindAbove(const SheetRow& row) const {
    if (std::ranges::any_of(row.cells, [](const SheetCell& cell) { return !IsBlank(cell) && !IsCaption(cell); })) {
        return Above::Data;
    }
    const SheetCell* code = CodeIn(row);
    const auto saysCode = [](const SheetCell& cell) { return SaysCode(TextOf(cell)); };
    if (code != nullptr
            ? NamesCodes(TextOf(*code)) || TextOf(*code).compare(NameOf(code->column), Qt::CaseInsensitive) == 0
            : m_end.isEmpty() && std::ranges::any_of(row.cells, saysCode)) {
        return Above::Captions;
    }
    if (code == nullptr || std::ranges::any_of(row.cells, HasDigit)) {
        return Above::LikeData;
    }
    const CodesBelow below = LookBelow();
    if (below.ofWords == 0 && below.withDigit > 0) {
        const auto filled = std::ranges::count_if(row.cells, [](const SheetCell& cell) { return !IsBlank(cell); });
        return filled >= m_target->Columns().size() ? Above::Captions : Above::LikeCaptions;
    }
    return below.ofWords > below.withDigit ? Above::LikeData : Above::InDoubt;
}

bool SheetLoader::IsDataAbove(const SheetRow& row) {
    const auto first = std::ranges::find_if_not(row.cells, IsBlank);
    if (m_table.end.isEmpty() || first == row.cells.end() || RepeatsHeader(row)) {
        return false;
    }
    const Above kind = KindAbove(row);
    const bool isCaptions = kind == Above::Captions || kind == Above::LikeCaptions;
    if (kind == Above::Captions && !m_isOwn) {
        return false;
    }
    const auto data =
        std::ranges::find_if(row.cells, [](const SheetCell& cell) { return !IsBlank(cell) && !IsCaption(cell); });
    const SheetCell& told = data == row.cells.end() ? *first : *data;
    const QString column = told.column < m_target->Columns().size() ? NameOf(told.column) : QString();
    if (m_isOwn && !isCaptions && (m_end.isEmpty() || CodeIn(row) != nullptr)) {
        if (kind == Above::InDoubt) {
            m_oddities.Add(QStringLiteral("FORSE DIDASCALIE"), column, row.number,
                           QStringLiteral("'%1' può essere una didascalia: si legge come un dato").arg(TextOf(told)));
        }
        return true;
    }
    const QString what = kind == Above::Data     ? QStringLiteral("sembra un dato")
                         : isCaptions && m_isOwn ? QStringLiteral("sembra una didascalia")
                                                 : QStringLiteral("può essere un dato");
    m_oddities.Add(QStringLiteral("RIGA SOPRA I DATI"), column, row.number,
                   QStringLiteral("'%1' %2; i dati cominciano alla riga %3: non si legge")
                       .arg(TextOf(told), what, QString::number(m_table.firstRow)));
    return false;
}

} // namespace sources
