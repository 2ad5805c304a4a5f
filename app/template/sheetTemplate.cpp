#include "app/template/sheetTemplate.h"

#include "adapters/contract/map/codesOfRule.h"
#include "adapters/origins/Excel/modImport_Excel.h"
#include "app/codes/TargetCodes.h"
#include "app/report/names.h"
#include "app/template/headerTexts.h"
#include "core/Schema.h"
#include "sources/tableFile.h"
#include "sources/templateFile.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace sheetTemplate {

namespace {

using modImport_Excel::Sheet;
using sources::TemplateColumn;
using sources::TemplateFile;
using sources::TemplateList;

Sheet SheetOf(contract::Button button) {
    for (const Sheet& sheet : modImport_Excel::Sheets()) {
        if (sheet.procedure->button == button) {
            return sheet;
        }
    }
    throw ImportError(QStringLiteral("Non c'è un modello per '%1'").arg(contract::ButtonName(button)));
}

// --- What a header means

/// The column of Quadrix behind a header.
struct Meant {
    const schema::Column* column;
    bool isNamed; ///< the header names it; else it is the one that the value goes to
};

Meant NamedBy(const QString& header, const QString& target) {
    const schema::Table* attached = schema::FindTable(header.section(u'.', 0, 0));
    return attached != nullptr ? Meant{attached->FindColumn(header.section(u'.', 1)), true}
                               : Meant{schema::FindTable(target)->FindColumn(header), true};
}

/// A code of another table may be told by a column of that one: of a supplier by its code of the source.
Meant FedBy(const QString& header, const QString& feed) {
    const schema::Table* table = schema::FindTable(feed.section(u'.', 0, 0));
    const schema::Column* fed = table == nullptr ? nullptr : table->FindColumn(feed.section(u'.', 1));
    if (fed == nullptr) {
        throw ImportError(QStringLiteral("La colonna '%1' non dice quale colonna di Quadrix è").arg(header));
    }
    const schema::Table* other = fed->refersTo.isEmpty() ? nullptr : schema::FindTable(fed->refersTo);
    const schema::Column* told = other == nullptr ? nullptr : other->FindColumn(header.section(u'.', 1));
    return {told != nullptr ? told : fed, false};
}

/// The headers whose codes are translated where they are none of Quadrix.
QStringList TranslatedHeaders(const contract::Needs& needs) {
    QStringList headers;
    for (const contract::Mapping* mapping : needs.mappings) {
        for (const contract::MapLine& line : mapping->lines) {
            headers += contract::CodesOf(line.rule).empty() ? QStringList() : line.sources;
        }
    }
    return headers;
}

QString SizeText(const schema::Column& column) {
    return column.size > 0 ? QStringLiteral(", al massimo %1 caratteri").arg(column.size) : QString();
}

QString KindText(const schema::Column& column) {
    switch (column.type) {
    case DataType::Bit:
        return QStringLiteral("Sì o no: 1 o 0.");
    case DataType::DateTime:
        return QStringLiteral("Data.");
    case DataType::Integer:
    case DataType::Long:
        return QStringLiteral("Numero intero.");
    case DataType::Double:
        return QStringLiteral("Numero.");
    default:
        return QStringLiteral("Testo%1.").arg(SizeText(column));
    }
}

QStringList ChoicesOf(const schema::Column& column) {
    return column.type == DataType::Bit ? QStringList{"1", "0"} : QStringList();
}

QString CodeText(const schema::Column& column) {
    return QStringLiteral("Codice di %1 (%2)%3. Vale anche il codice di chi compila: dopo l'importazione il programma "
                          "chiede quale codice di Quadrix è.")
        .arg(proof::TableTitle(column.refersTo), column.refersTo, SizeText(column));
}

// --- The columns

/// Makes the content of a template.
class Content {
public:
    Content(Session* session, const Sheet& sheet)
        : m_session(session),
          m_sheet(sheet),
          m_translated(TranslatedHeaders(sheet.procedure->needs)) {
        for (contract::NeededTables::Table& table : contract::NeededTables::Read(sheet.procedure->needs).Tables()) {
            if (table.name == sheet.name) {
                m_needs = std::move(table);
            }
        }
    }

    TemplateFile Make() {
        m_file.sheet = m_sheet.name;
        for (const QString& header : m_sheet.headers) {
            Add(header);
        }
        return std::move(m_file);
    }

private:
    void Add(const QString& header) {
        const HeaderText* text = TextOf(header);
        if (text == nullptr) {
            throw ImportError(QStringLiteral("La colonna '%1' non ha una spiegazione").arg(header));
        }
        const Meant meant = MeantBy(header);
        const bool isCode = meant.isNamed && !meant.column->refersTo.isEmpty() && m_translated.contains(header);
        const TemplateList* list = isCode && m_session != nullptr ? ListOf(*meant.column) : nullptr;
        m_file.columns.push_back({.header = header,
                                  .caption = QString::fromUtf8(text->caption),
                                  .note = NoteOf(*text, *meant.column, isCode, list),
                                  .isText = IsTextType(meant.column->type),
                                  .isNeeded = m_needs.necessary.contains(header),
                                  .list = list == nullptr ? QString() : list->title,
                                  .choices = ChoicesOf(*meant.column),
                                  .example = ExampleOf(*text, *meant.column, list)});
    }

    Meant MeantBy(const QString& header) const {
        const Meant named = NamedBy(header, m_sheet.target);
        return named.column != nullptr ? named : FedBy(header, m_needs.feeds.value(header).value(0));
    }

    /// The codes that a column holds, as the company has them; null where it has none yet.
    const TemplateList* ListOf(const schema::Column& column) {
        const QString title = proof::TableTitle(column.refersTo);
        const auto known = std::find_if(m_file.lists.begin(), m_file.lists.end(),
                                        [&title](const TemplateList& each) { return each.title == title; });
        if (known != m_file.lists.end()) {
            return &*known;
        }
        TemplateList list{title, {}};
        const codes::TargetCodes has(*m_session, {column.refersTo, column.refersToColumn});
        for (const codes::TargetCode& code : has.All()) {
            list.codes.push_back({code.code, code.description});
        }
        return list.codes.empty() ? nullptr : &m_file.lists.emplace_back(std::move(list));
    }

    QString NoteOf(const HeaderText& text, const schema::Column& column, bool isCode, const TemplateList* list) const {
        QStringList lines{QString::fromUtf8(text.caption) + u'.'};
        const QString meaning = QString::fromUtf8(text.meaning);
        lines += meaning.isEmpty() ? QStringList() : QStringList(meaning);
        lines.append(isCode ? CodeText(column) : KindText(column));
        if (list != nullptr) {
            lines.append(QStringLiteral("Quelli che ci sono stanno nel foglio %1, sotto '%2'.")
                             .arg(sources::TemplateCodesSheet, list->title));
        }
        if (m_needs.necessary.contains(text.header)) {
            lines.append(QStringLiteral("Necessaria: la colonna non si può togliere."));
        }
        if (m_file.columns.empty()) {
            lines.append(
                QStringLiteral("Si importa dalla riga 3, che qui è un esempio da sovrascrivere, fino alla prima "
                               "riga senza codice."));
        }
        return lines.join(u'\n');
    }

    static QVariant ExampleOf(const HeaderText& text, const schema::Column& column, const TemplateList* list) {
        const QString example = QString::fromUtf8(text.example);
        if (!IsTextType(column.type)) {
            return example.isEmpty() ? QVariant() : QVariant(example.toDouble());
        }
        const auto hasIt = [&example](const sources::TemplateCode& each) { return each.code == example; };
        if (list != nullptr && !example.isEmpty() && std::none_of(list->codes.begin(), list->codes.end(), hasIt)) {
            return list->codes.front().code;
        }
        return text.example == AnyCode ? QVariant() : QVariant(example);
    }

    Session* m_session;
    const Sheet& m_sheet;
    QStringList m_translated;
    contract::NeededTables::Table m_needs;
    TemplateFile m_file;
};

// --- What is there

/// Whether a row is the example, but for the codes that the company of that time had.
bool IsExample(const QStringList& values, const TemplateFile& file) {
    for (size_t i = 0; i < file.columns.size(); ++i) {
        const TemplateColumn& column = file.columns[i];
        const bool isCode = TextOf(column.header)->example == AnyCode || !column.list.isEmpty();
        if (!isCode && values.value(static_cast<qsizetype>(i)) != mod_ovTools::ToText(column.example)) {
            return false;
        }
    }
    return true;
}

/// Whether a file is this template, and nobody has written into it.
bool IsUntouched(const QString& path, const TemplateFile& file) {
    QStringList headers;
    QStringList captions;
    for (const TemplateColumn& column : file.columns) {
        headers.append(column.header);
        captions.append(column.caption);
    }
    try {
        const sources::TableOfFile there = sources::ReadTable(path);
        return there.columns == headers && !there.rows.empty() && there.rows.front().values == captions &&
               there.rows.size() <= 2 && (there.rows.size() == 1 || IsExample(there.rows.back().values, file));
    } catch (const ImportError&) {
        return false;
    }
}

/// The same for the template of any sheet: one that was made for the wrong data is no loss.
bool IsUntouched(const QString& path, Session* session) {
    const std::vector<Sheet> sheets = modImport_Excel::Sheets();
    return std::any_of(sheets.begin(), sheets.end(),
                       [&](const Sheet& sheet) { return IsUntouched(path, Content(session, sheet).Make()); });
}

void CheckPath(const QString& path, Session* session) {
    const auto refuse = [&path](const QString& why) {
        throw ImportError(QStringLiteral("Modello '%1': %2").arg(QDir::toNativeSeparators(path), why));
    };
    if (QFileInfo(path).suffix().compare(QStringLiteral("xlsx"), Qt::CaseInsensitive) != 0) {
        refuse(QStringLiteral("il nome deve finire in .xlsx"));
    }
    if (QFileInfo::exists(path) && !IsUntouched(path, session)) {
        refuse(QStringLiteral("esiste già e non è un modello ancora da compilare: non viene sovrascritto, indicarne un "
                              "altro"));
    }
}

} // namespace

std::vector<contract::Button> ButtonsOf(const contract::Origin& origin) {
    std::vector<contract::Button> buttons;
    if (&origin == &modImport_Excel::Entry()) {
        for (const Sheet& sheet : modImport_Excel::Sheets()) {
            buttons.push_back(*sheet.procedure->button);
        }
    }
    return buttons;
}

QString Written::Text(const QString& path) const {
    const QString offered = lists.isEmpty()
                                ? QStringLiteral("nessun codice da scegliere")
                                : QStringLiteral("codici da scegliere %1 (%2)").arg(codes).arg(lists.join(", "));
    return QStringLiteral("Modello scritto in %1: foglio %2, colonne %3, %4")
        .arg(QDir::toNativeSeparators(path), sheet, QString::number(columns), offered);
}

Written Write(Session* session, contract::Button button, const QString& path) {
    const Sheet sheet = SheetOf(button);
    const TemplateFile file = Content(session, sheet).Make();
    CheckPath(path, session);
    sources::WriteTemplate(path, file);
    Written written{file.sheet, static_cast<qsizetype>(file.columns.size()), {}, 0};
    for (const TemplateList& list : file.lists) {
        written.lists.append(list.title);
        written.codes += static_cast<qsizetype>(list.codes.size());
    }
    return written;
}

} // namespace sheetTemplate
