#include "sources/workbook/Xls.h"

#include "sources/workbook/XlsSheet.h"

namespace sources {

namespace {

const QString Excel97Stream = QStringLiteral("Workbook");
const QString Excel5Stream = QStringLiteral("Book");

/// The stream of the workbook. Raises `ImportError` saying what the file is when there is none.
QString StreamName(const CompoundFile& file) {
    for (const QString& name : {Excel97Stream, Excel5Stream}) {
        if (file.Holds(name)) {
            return name;
        }
    }
    throw ImportError(
        file.Holds(QStringLiteral("EncryptedPackage"))
            ? QStringLiteral("è protetto da una password: aprirlo con Excel, togliere la password, salvarlo "
                             "e riprovare")
            : QStringLiteral("non è una cartella di lavoro di Excel"));
}

} // namespace

Xls::Xls(const QString& path, const QString& codePage)
    : m_file(path),
      m_stream(m_file.Open(StreamName(m_file))),
      m_page(codePage) {
    ReadShared();
}

void Xls::ReadShared() {
    constexpr quint16 excel97 = 0x0600;
    constexpr quint16 excel5 = 0x0500;
    BiffRecords records(m_file, m_stream);
    if (!records.Next() || records.Type() != Biff::Bof ||
        (records.At<quint16>(0) != excel97 && records.At<quint16>(0) != excel5)) {
        throw ImportError(QStringLiteral("è di una versione di Excel che non si legge (prima della 5.0): aprirlo con "
                                         "Excel e salvarlo come .xlsx"));
    }
    m_isUnicode = records.At<quint16>(0) == excel97;
    while (records.Next()) {
        if (records.Type() == Biff::Eof) {
            return;
        }
        ReadRecord(records);
    }
    throw ImportError(QStringLiteral("il file è incompleto: copiarlo di nuovo dall'origine"));
}

void Xls::ReadRecord(BiffRecords& records) {
    constexpr qsizetype formatAt = 2;
    switch (records.Type()) {
    case Biff::FilePass:
        throw ImportError(
            QStringLiteral("è protetto da una password: aprirlo con Excel, togliere la password, salvarlo e "
                           "riprovare"));
    case Biff::CodePage:
        if (!m_isUnicode && records.At<quint16>(0) != 0) {
            constexpr quint16 ansi = 0x8001;
            m_tellsPage = true;
            m_page = CodePage(records.At<quint16>(0) == ansi ? QStringLiteral("1252")
                                                             : QString::number(records.At<quint16>(0)));
        }
        break;
    case Biff::Since1904:
        m_since1904 = records.At<quint16>(0) != 0;
        break;
    case Biff::BoundSheet:
        ReadSheet(records);
        break;
    case Biff::Format:
        m_written.emplace_back(records.At<quint16>(0), CellFormat(Text(records, formatAt, m_isUnicode ? 2 : 1)));
        break;
    case Biff::Xf: {
        const int number = records.At<quint16>(formatAt);
        const auto written = std::find_if(m_written.begin(), m_written.end(),
                                          [number](const auto& format) { return format.first == number; });
        m_formats.push_back(written == m_written.end() ? CellFormat::BuiltIn(number) : written->second);
        break;
    }
    case Biff::Sst:
        ReadTexts(records);
        break;
    default:
        break;
    }
}

void Xls::ReadSheet(BiffRecords& records) {
    constexpr quint8 worksheet = 0;
    if (records.At<quint8>(5) == worksheet) {
        constexpr quint8 visibility = 3; // bits of it: seen, hidden, hidden from the menu too
        m_sheets.push_back({Text(records, 6, 1), records.At<quint32>(0), (records.At<quint8>(4) & visibility) != 0});
    }
}

void Xls::ReadTexts(BiffRecords& records) {
    constexpr qsizetype head = 8;
    const auto count = records.At<quint32>(4);
    BiffText texts(records, head);
    for (quint32 text = 0; text < count; ++text) {
        m_texts.Add(texts.Unicode(2).toUtf8());
    }
}

QString Xls::Text(BiffRecords& records, qsizetype offset, int bytesOfLength) const {
    BiffText text(records, offset);
    return m_isUnicode ? text.Unicode(bytesOfLength) : text.InPage(bytesOfLength, m_page);
}

QStringList Xls::Sheets() const {
    QStringList names;
    for (const Sheet& sheet : m_sheets) {
        names.append(sheet.name);
    }
    return names;
}

const CellFormat* Xls::Format(int number) const {
    return number >= 0 && static_cast<size_t>(number) < m_formats.size() ? &m_formats[static_cast<size_t>(number)]
                                                                         : nullptr;
}

std::unique_ptr<SheetReader> Xls::Read(int sheet) {
    return std::make_unique<XlsSheet>(*this,
                                      BiffRecords(m_file, m_stream, m_sheets.at(static_cast<size_t>(sheet)).offset));
}

} // namespace sources
